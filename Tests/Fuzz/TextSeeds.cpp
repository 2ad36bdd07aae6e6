#include "Tests/Fuzz/CSeedFolder.h"

namespace tsm {

void addTextSeeds(CSeedFolder& seeds)
{
    int number = 0;
    for (const char* text : {"12", "-0x1F", "017", "1,5e-3", "2.5k", "On", "Off", "true", "a;b|c;d",
                             "1 2,3 4;5 6", "-inf", "Gr\xc3\xbc\xc3\x9f", "\xe2\x82\xac 5", "0.0",
                             "1e308", "123456789012345678901234567890", "30.0", "100"}) {
        const std::string name = std::to_string(++number);
        seeds.add("text", name, std::string_view(text));
        for (int which = 0; which < 100; which += 9)
            seeds.add("param_text", name + "-" + std::to_string(which), std::string_view(text),
                      which);
    }
    seeds.add("text", "stored", std::string_view("\x04\0\0\0Gray", 8));
    // Letters for objects count by their codes: "H" is the tree's first.
    seeds.add("attr_text", "values", std::string_view("Hx=12\nIy={x}\nJz={/ x?none}{@q?w}\nKx=tr"));
    seeds.add("attr_text", "links",
              std::string_view("Ix=1\nJy={*/a x}\nKz={*a x}\nIx=2\nMvalue=3"));
    seeds.add("attr_text", "nested",
              std::string_view("Hn=x\nHx=7\nIy={{n}}\nJa={b}{b}\nJb={a}{a}"));
}

} // namespace tsm
