#pragma once

#include <string>
#include <vector>

namespace tsm {

/// A table of text in columns: the first aligned left, the others, figures, right.
class CTextTable {
public:
    explicit CTextTable(std::vector<std::string> heads);

    /// `cells` has as many entries as there are heads.
    void addRow(std::vector<std::string> cells);

    /// All lines, with a rule below the heads.
    [[nodiscard]] std::string toText() const;

private:
    std::vector<std::vector<std::string>> rows; // the heads are the first
};

/// A number with so many decimals; "-inf" where the measured thing is silent.
[[nodiscard]] std::string formatNumber(double value, int decimals);

} // namespace tsm
