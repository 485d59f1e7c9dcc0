#include "did_you_mean.h"

#include <algorithm>
#include <vector>

namespace {

/// How many letters must be put in, left out, exchanged or swapped with the next one to make b of a.
int distanceOf(const QString& a, const QString& b)
{
    const auto width = static_cast<std::size_t>(b.size()) + 1;
    std::vector<int> beforeLast(width);
    std::vector<int> last(width);
    std::vector<int> row(width);
    for (std::size_t j = 0; j < width; ++j) {
        row[j] = static_cast<int>(j);
    }
    for (int i = 1; i <= a.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (int j = 1; j <= b.size(); ++j) {
            const auto at = static_cast<std::size_t>(j);
            const bool same = a.at(i - 1) == b.at(j - 1);
            row[at] = std::min({last[at] + 1, row[at - 1] + 1, last[at - 1] + (same ? 0 : 1)});
            if (i > 1 && j > 1 && a.at(i - 1) == b.at(j - 2) && a.at(i - 2) == b.at(j - 1)) {
                row[at] = std::min(row[at], beforeLast[at - 2] + 1);
            }
        }
    }
    return row.back();
}

} // namespace

DWording didYouMean(const QString& word, const QStringList& known)
{
    constexpr int lettersForAMistake = 3;
    constexpr int longest = 64; // of what a person mistypes
    if (word.size() > longest) {
        return {};
    }
    const QString* nearest = nullptr;
    int least = std::max(1, word.size() / lettersForAMistake) + 1;
    for (const QString& candidate : known) {
        const int distance =
            candidate.size() > longest ? least : distanceOf(word.toUpper(), candidate.toUpper());
        if (distance < least && distance < candidate.size()) {
            least = distance;
            nearest = &candidate;
        }
    }
    return nearest != nullptr ? wording(R"(; did you mean "%1"?)").arg(*nearest) : DWording();
}
