#include "channel/replybuffer.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <algorithm>

namespace {

// As the channel does: the bytes and a NUL.
void write(ReplyBuffer *reply, const QByteArray &bytes)
{
    std::copy_n(bytes.constData(), bytes.size() + 1, reply->data());
}

} // namespace

class TestReplyBuffer : public QObject
{
    Q_OBJECT

private slots:
    void itStartsEmpty()
    {
        const ReplyBuffer reply;
        QCOMPARE(reply.text(), QString());
        QCOMPARE(reply.utf8Text(), QString());
    }

    void theTextEndsAtTheNul()
    {
        ReplyBuffer reply;
        write(&reply, QByteArray("yes\0no", 6));
        QCOMPARE(reply.text(), "yes");
        QCOMPARE(reply.utf8Text(), "yes");
    }

    void everyByteIsACharacterAndGoesBackAsItCame()
    {
        QByteArray bytes;
        for (int value = 1; value < 200; ++value) {
            bytes += static_cast<char>(value);
        }
        ReplyBuffer reply;
        write(&reply, bytes);
        QCOMPARE(reply.text().size(), bytes.size());
        QCOMPARE(reply.text().toLatin1(), bytes);
    }

    void inABackupTheBytesAreUtf8()
    {
        ReplyBuffer reply;
        write(&reply,
              "K\xc3\xbc"
              "che");
        QCOMPARE(reply.utf8Text(), QString::fromUtf8("K\u00fcche"));
        QCOMPARE(reply.text().size(), 6);
    }

    void itHoldsWhatTheChannelMayWrite()
    {
        const QByteArray longest(199, 'x');
        ReplyBuffer reply;
        write(&reply, longest);
        QCOMPARE(reply.text(), QString(longest));
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
