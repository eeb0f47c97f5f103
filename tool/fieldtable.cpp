#include "tool/fieldtable.h"

QString FieldTable::text(const QVector<Field> &fields)
{
    constexpr int titleWidth = 22; // the longest title and two spaces
    QString table;
    for (const Field &field : fields) {
        table += field.title.leftJustified(titleWidth) + textOf(field.value) + QLatin1Char('\n');
    }
    return table;
}

QJsonObject FieldTable::json(const QVector<Field> &fields)
{
    QJsonObject sections;
    for (const Field &field : fields) {
        const QString name = field.path.section(QLatin1Char('/'), 0, 0);
        QJsonObject section = sections[name].toObject();
        section.insert(field.path.section(QLatin1Char('/'), 1), field.value);
        sections.insert(name, section);
    }
    return sections;
}
