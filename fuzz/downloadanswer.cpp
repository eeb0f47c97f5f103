// The answer to "system download N".

#include "channel/downloadanswer.h"

#include "fuzz/target.h"

#include <array>
#include <cstdio>
#include <limits>

namespace {

// The scan of the C library, from which the parser may differ in two things only.
std::optional<DownloadAnswer> scanned(const QByteArray &line)
{
    std::array<char, DownloadAnswer::maxTextSize + 1> text{};
    DownloadAnswer answer;
    if (std::sscanf(line.constData(), " %d '%511[^']", &answer.total, text.data()) != 2) {
        return std::nullopt;
    }
    answer.text = text.data();
    return answer;
}

// The C library takes a number out of range for any other.
bool isOutOfRange(int number)
{
    return number == std::numeric_limits<int>::max() || number == std::numeric_limits<int>::min();
}

} // namespace

void fuzz(const QByteArray &input)
{
    const std::optional<DownloadAnswer> answer = parseDownloadAnswer(input);
    const std::optional<DownloadAnswer> expected = scanned(input);
    if (!answer) {
        Fuzz::demand(!expected, "what the C library reads is read");
        return;
    }
    Fuzz::demand(answer->text.size() <= DownloadAnswer::maxTextSize, "the text is bounded");
    Fuzz::demand(!answer->text.contains('\'') && !answer->text.contains('\0'),
                 "the text ends at a quote or at the end");
    Fuzz::demand(input.contains('\'' + answer->text), "the text stands after a quote");
    Fuzz::demand(expected.has_value() || answer->text.isEmpty(),
                 "only an empty text is read that the C library refuses");
    if (expected) {
        Fuzz::demand(expected->text == answer->text, "the C library reads the same text");
        Fuzz::demand(isOutOfRange(answer->total) || expected->total == answer->total,
                     "the C library reads the same number");
    }
}
