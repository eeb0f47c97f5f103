#include "host/logtext.h"

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QRegularExpression>
#include <QSaveFile>

namespace {

// An answer may hold what separates cells and lines.
QString oneCell(QString text)
{
    static const QRegularExpression separators(QStringLiteral("[\\t\\r\\n]"));
    return text.replace(separators, QStringLiteral(" "));
}

QString titles(const QAbstractItemModel &log)
{
    QStringList cells;
    for (int column = 0; column < log.columnCount(); ++column) {
        cells << log.headerData(column, Qt::Horizontal).toString();
    }
    return cells.join(QLatin1Char('\t'));
}

} // namespace

QString LogText::line(const QAbstractItemModel &log, int row)
{
    QStringList cells;
    for (int column = 0; column < log.columnCount(); ++column) {
        cells << oneCell(log.index(row, column).data().toString());
    }
    return cells.join(QLatin1Char('\t'));
}

bool LogText::save(const QAbstractItemModel &log, const QString &path, QString *problem)
{
    QSaveFile file(path);
    bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Text);
    if (isWritten) {
        file.write(titles(log).toUtf8() + '\n');
        for (int row = 0; row < log.rowCount(); ++row) {
            file.write(line(log, row).toUtf8() + '\n');
        }
        isWritten = file.commit();
    }
    if (!isWritten) {
        *problem = QCoreApplication::translate("LogText", "Cannot write \"%1\": %2.")
                       .arg(path, file.errorString());
    }
    return isWritten;
}
