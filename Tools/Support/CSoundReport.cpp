#include "Tools/Support/CSoundReport.h"

#include <cstdio>

namespace tsm {

namespace {

std::string quote(const CString& text)
{
    std::string quoted = "\"";
    for (const char c : text.toUtf8()) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(c));
            quoted += code;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

/// The members of an object in order, one a line.
class CJsonObject {
public:
    explicit CJsonObject(const char* lineIndent) : indent(lineIndent) {}
    CJsonObject& add(const CString& name, const std::string& value)
    {
        body += (body.empty() ? "\n" : ",\n") + indent + "  " + quote(name) + ": " + value;
        return *this;
    }
    CJsonObject& add(const char* name, std::int64_t value)
    {
        return add(CString(name), std::to_string(value));
    }
    CJsonObject& add(const char* name, double value) { return add(CString(name), number(value)); }
    [[nodiscard]] std::string close() const
    {
        return body.empty() ? "{}" : "{" + body + "\n" + indent + "}";
    }

private:
    std::string indent;
    std::string body;
};

} // namespace

std::string CSoundReport::toJson() const
{
    const double seconds = static_cast<double>(frames) / rate;
    CJsonObject texts("  ");
    for (const CNamedText& parameter : parameters)
        texts.add(parameter.name, quote(parameter.text));

    CJsonObject object("");
    object.add("rate", std::int64_t{rate})
        .add("channels", std::int64_t{channels})
        .add("frames", frames)
        .add("outputFrames", outputFrames)
        .add("latency", std::int64_t{latency})
        .add("tail", tail)
        .add("block", std::int64_t{block})
        .add("seconds", seconds)
        .add("elapsed", elapsedSeconds)
        .add("timesRealTime", elapsedSeconds > 0.0 ? seconds / elapsedSeconds : 0.0)
        .add("inputPeak", inputPeak)
        .add("inputRms", inputRms)
        .add("outputPeak", outputPeak)
        .add("outputRms", outputRms)
        .add("clipped", clipped)
        .add("parameters", texts.close());
    return object.close() + "\n";
}

} // namespace tsm
