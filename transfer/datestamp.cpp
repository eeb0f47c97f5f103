#include "transfer/datestamp.h"

#include "channel/quotes.h"

#include <QDate>
#include <QLocale>
#include <QRegularExpression>

QString DateStamp::removedFrom(const QString &description)
{
    static const QString copyPrefix = QStringLiteral("copy of ");
    static const QRegularExpression trailingDate(QStringLiteral("\\d{2,2}-\\d{2,2}-\\d{4,4}\\z"));
    static const QString placeholder = QStringLiteral("00-00-0000");
    static const QString removable = QLatin1Char(' ') + placeholder;

    QString text = withoutDoubleQuotes(description);
    if (text.startsWith(copyPrefix)) {
        text.remove(0, copyPrefix.size());
    }
    text.replace(trailingDate, placeholder);
    // A date without a blank before it stays behind as the placeholder: it may be part of a word.
    if (text.endsWith(removable)) {
        text.chop(removable.size());
    }
    return text;
}

QString DateStamp::today()
{
    return QLocale::c().toString(QDate::currentDate(), QStringLiteral("dd-MM-yyyy"));
}
