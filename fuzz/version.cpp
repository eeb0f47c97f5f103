// Version numbers of the controller and of documents.

#include "backup/version.h"

#include "fuzz/target.h"

#include <QString>

void fuzz(const QByteArray &input)
{
    const QString text = QString::fromUtf8(input);
    bool isVersion = false;
    const Version version = parseVersion(text, &isVersion);
    Fuzz::demand(parseVersion(text) == version, "the version does not depend on the flag");
    Fuzz::demand(version.major >= 0, "there is always a major place");
    Fuzz::demand(version.minor >= -1 && version.micro >= -1, "no place is negative but -1");
    Fuzz::demand(version.minor >= 0 || version.micro == -1,
                 "no place is given after one that is not");

    const QString written = versionToString(version);
    bool isWritten = false;
    Fuzz::demand(parseVersion(written, &isWritten) == version && isWritten,
                 "what is written is read back");
    Fuzz::demand(versionToString(parseVersion(written)) == written,
                 "what is read back is written again");
}
