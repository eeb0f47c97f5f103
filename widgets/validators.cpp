#include "widgets/validators.h"

#include <QRegExp>
#include <QRegExpValidator>

QRegExpValidator *Validators::forText(QObject *parent)
{
    return new QRegExpValidator(QRegExp(QStringLiteral(R"([0-9a-zA-Z_\-\+=.,;:/ ]*)")), parent);
}

QRegExpValidator *Validators::forPassword(QObject *parent)
{
    return new QRegExpValidator(QRegExp(QStringLiteral(R"([0-9a-zA-Z_\-\+./]+)")), parent);
}
