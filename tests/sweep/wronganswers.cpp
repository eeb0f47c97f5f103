#include "tests/sweep/wronganswers.h"

#include "simulator/reply.h"

namespace {

using Call = LineChannel::Operation;

QByteArrayList noAnswersAtAll()
{
    return {"", QByteArray(Reply::maxLength, 'x'), "\xe4\xc3\xb6\xff\x80"};
}

// Instead of " 9 'TEXT'".
QByteArrayList wrongChunks(const QByteArray &answer)
{
    const QByteArray text = answer.mid(answer.indexOf('\''));
    return {" 1 " + text,       " 0 " + text,   " -2 " + text,
            " 99999 " + text,   "many " + text, " 9 'QUJD=QUJD'",
            " 9 'no alphabet'", " 9",           "42"};
}

QByteArray oppositeOf(const QByteArray &answer)
{
    return answer == "yes" ? "no" : "yes";
}

QByteArrayList wrongCounts()
{
    return {"many", "-3", "0", "2147483647", "99999999999", "1 2"};
}

QByteArrayList wrongFractions()
{
    return {"much", "-1", "0", "1e308", "nan", "0.5 0.5"};
}

QByteArrayList wrongWords(const Exchange &exchange)
{
    if (exchange.command == "system import available") {
        return {"-1 config", "2147483647 config", "many config", "7 config", "3 configs", "config"};
    }
    if (exchange.answer == "yes" || exchange.answer == "no") {
        return {"YES", "yes ", "42", "maybe", oppositeOf(exchange.answer)};
    }
    return {"42", "-1", "two words", "'quoted'"};
}

} // namespace

QByteArrayList wrongAnswersTo(const Exchange &exchange)
{
    switch (exchange.operation) {
    case Call::SendCommand:
        return {};
    case Call::QueryInt:
        return noAnswersAtAll() + wrongCounts();
    case Call::QueryDouble:
        return noAnswersAtAll() + wrongFractions();
    case Call::QueryBool:
        return noAnswersAtAll() + QByteArrayList{"maybe", "42", oppositeOf(exchange.answer)};
    case Call::SendCommandReply:
        return noAnswersAtAll() + QByteArrayList{"42", "veltra2 error", "veltra2 ok "};
    case Call::QueryString:
        break;
    }
    const bool isChunk = exchange.answer.startsWith(' ');
    return noAnswersAtAll() + (isChunk ? wrongChunks(exchange.answer) : wrongWords(exchange));
}
