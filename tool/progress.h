#pragma once

/// Tells on the standard error how many files have been judged, as long as it lives. Silent where
/// that is no terminal, and about a single file.
class Progress
{
public:
    /// @p total is the number of files.
    explicit Progress(int total);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /// Tells that so many have been judged.
    void show(int done) const;

private:
    const int m_total;
    const bool m_isShown;
};
