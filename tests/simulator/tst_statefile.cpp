#include "simulator/statefile.h"
#include "tests/simulator/answers.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestStateFile : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;

    // Saves it in the file. @return what stands there then
    QByteArray saved(const ControllerState &state) const
    {
        QString error;
        const bool isSaved = StateFile::save(m_path, state, &error);
        return isSaved ? contentOf(m_path) : error.toUtf8();
    }

    // Why a file of that content cannot be loaded. Nothing may come out of it then.
    QString refusalOf(const QByteArray &content) const
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            return "not written";
        }
        file.close();
        ControllerState state;
        QString error;
        const bool isRefused = !StateFile::load(m_path, &state, &error);
        return isRefused && state == ControllerState() ? error : "taken";
    }

    void comesBack(const ControllerState &state) const
    {
        saved(state);
        ControllerState loaded;
        QString error;
        QVERIFY2(StateFile::load(m_path, &loaded, &error), qPrintable(error));
        QVERIFY(loaded == state);
    }

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("state.json");
    }

    void aStateComesBackAsItWas()
    {
        comesBack(ControllerState::sample());
        ControllerState state = smallState();
        state.isEmbedded = false;
        state.storeCapacity = 9007199254740991;
        state.activity = "measuring";
        state.configurations[1].owner = "\x80\xff \"quoted\" \\ 'x'";
        state.configurations[2].password = SaltedHash::of("secret");
        state.configurations[2].data = QByteArray("\0\xff", 2);
        comesBack(state);
    }

    void aFailedWriteLeavesTheOldFile()
    {
        const QByteArray before = saved(smallState());
        QString error;
        {
            const FileSizeLimit limit(20000);
            QVERIFY(!StateFile::save(m_path, ControllerState::sample(), &error));
        }
        QVERIFY(error.startsWith(m_path + ": "));
        QCOMPARE(contentOf(m_path), before);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList("state.json"));
    }

    void whatIsNotThereIsReported()
    {
        ControllerState state = smallState();
        QString error;
        const QString path = m_folder->filePath("nowhere/state.json");
        QVERIFY(!StateFile::save(path, state, &error));
        QVERIFY(error.startsWith(path + ": "));
        QVERIFY(!StateFile::load(m_path, &state, &error));
        QCOMPARE(error, m_path + ": No such file or directory");
        QVERIFY(state == smallState());
    }

    void everyTruncationIsRefused()
    {
        const QByteArray whole = saved(smallState()).trimmed();
        for (int size = 0; size < whole.size();
             size += size < 200 || size > whole.size() - 200 ? 1 : 37) {
            QVERIFY(refusalOf(whole.left(size)) != "taken");
        }
    }

    void everyMemberIsNeededAndTyped()
    {
        const QJsonObject whole = QJsonDocument::fromJson(saved(smallState())).object();
        QCOMPARE(whole.size(), 17);
        const QString noState = "not the state of a simulated controller";
        for (const QString &key : whole.keys()) {
            const bool isFormat = key == "format";
            QJsonObject spoiled = whole;
            spoiled.remove(key);
            const QString missing = refusalOf(QJsonDocument(spoiled).toJson());
            QVERIFY2(missing.endsWith(isFormat ? noState : '"' + key + "\" is missing"),
                     qPrintable(missing));
            spoiled.insert(key, QJsonValue::Null);
            const QString untyped = refusalOf(QJsonDocument(spoiled).toJson());
            QVERIFY2(untyped.contains(isFormat ? noState : '"' + key + "\" is not "),
                     qPrintable(untyped));
        }
    }

    void wrongContentsAreRefused()
    {
        const QByteArray content = saved(smallState());
        const auto expectRefusal = [&](const char *from, const char *to, const QString &error) {
            QVERIFY2(content.contains(from), from);
            QByteArray changed = content;
            changed.replace(content.indexOf(from), int(qstrlen(from)), to);
            QCOMPARE(refusalOf(changed), m_path + ": " + error);
        };
        expectRefusal("{", "[", "missing value separator at byte 16");
        expectRefusal("controller 1\"", "controller 2\"",
                      "not the state of a simulated controller");
        expectRefusal("\"YmFzZSBkYXRh\"", "\"*\"", "controller: \"base\" is no Base64");
        for (const char *noLine : {R"("\u0416")", R"("a\nb")"}) {
            expectRefusal("\"Ann\"", noLine, "configuration 2: \"owner\" is no line of Latin-1");
        }
        for (const char *noNumber : {"1.5", "1e300"}) {
            expectRefusal("100000", noNumber, "controller: \"storeCapacity\" is no whole number");
        }
        expectRefusal("\"slaves\": [", "\"slaves\": [7,",
                      "controller: \"slaves\" holds something else than objects");
        expectRefusal("\"near\"", "true", "slave 1: \"name\" is not a text");
        expectRefusal(R"("active": "first")", R"("active": "nobody")", "\"nobody\" is not stored");
    }
};

VELTRA4_TEST(TestStateFile)
#include "tst_statefile.moc"
