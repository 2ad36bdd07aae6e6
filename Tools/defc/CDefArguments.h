#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace tsm {

/// The arguments of one use of a fragment, and the `$(...)` references that they fill.
///
/// `$(name)` is the argument, `$(name?text)` the argument or the text when it isn't given, and
/// `$($)` a dollar sign. Filled-in values are not scanned again.
class CDefArguments {
public:
    void set(const std::string& name, const std::string& value) { values[name] = value; }
    const std::map<std::string, std::string>& getValues() const { return values; }

    /// Fills in all references. Names that have neither a value nor a text of their own go to
    /// `missing`. False when a `$(` has no end.
    bool expand(std::string_view text, std::string& out, std::set<std::string>& missing) const;

    /// Adds the names of all references in `text` to `names`.
    static void collect(std::string_view text, std::set<std::string>& names);

    /// The text that expands to `text`.
    static std::string escape(std::string_view text);

private:
    std::map<std::string, std::string> values;
};

} // namespace tsm
