#include "channel/replybuffer.h"
#include "tests/support/testmain.h"

#include <QTest>

#include <algorithm>

namespace {

// A buffer in which a channel has written the bytes and a NUL.
ReplyBuffer holding(const QByteArray &bytes)
{
    ReplyBuffer reply;
    std::copy_n(bytes.constData(), bytes.size() + 1, reply.data());
    return reply;
}

} // namespace

class TestReplyBuffer : public QObject
{
    Q_OBJECT

private slots:
    void itStartsEmpty()
    {
        const ReplyBuffer reply;
        QCOMPARE(reply.text(), "");
        QCOMPARE(reply.utf8Text(), "");
    }

    void theTextEndsAtTheNul()
    {
        const ReplyBuffer reply = holding(QByteArray("yes\0no", 6));
        QCOMPARE(reply.text(), "yes");
        QCOMPARE(reply.utf8Text(), "yes");
        QCOMPARE(reply.bytes(), QByteArray("yes"));
    }

    void everyByteIsACharacterAndGoesBackAsItCame()
    {
        QByteArray bytes;
        for (int value = 1; value < 200; ++value) { // as many as the channel may write
            bytes += static_cast<char>(value);
        }
        const ReplyBuffer reply = holding(bytes);
        QCOMPARE(reply.text().size(), bytes.size());
        QCOMPARE(reply.text().toLatin1(), bytes);
    }

    void inABackupTheBytesAreUtf8()
    {
        const ReplyBuffer reply = holding(QByteArray("K\xc3\xbc") + "che");
        QCOMPARE(reply.utf8Text(), QString::fromUtf8("K\u00fcche"));
        QCOMPARE(reply.text().size(), 6);
    }

    void anAnswerWithoutAnEndIsCut()
    {
        ReplyBuffer reply;
        std::fill_n(reply.data(), int(ReplyBuffer::capacity), 'x');
        QCOMPARE(reply.text().size(), int(ReplyBuffer::capacity));
        QCOMPARE(reply.utf8Text().size(), int(ReplyBuffer::capacity));
    }
};

VELTRA4_TEST(TestReplyBuffer)
#include "tst_replybuffer.moc"
