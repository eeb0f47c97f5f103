#include "tool/progress.h"

#include "tool/terminal.h"

#include <cstdio>

Progress::Progress(int total)
    : m_total(total)
    , m_isShown(total > 1 && Terminal::isTerminal(stderr))
{
    show(0);
}

Progress::~Progress()
{
    if (m_isShown) {
        std::fputs("\r\x1b[K", stderr); // takes the line away
    }
}

void Progress::show(int done) const
{
    if (m_isShown) {
        std::fprintf(stderr, "\r%d of %d", done, m_total);
    }
}
