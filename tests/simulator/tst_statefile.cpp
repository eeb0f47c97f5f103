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

    void noPasswordStandsInTheFile()
    {
        const QByteArray content = saved(ControllerState::sample());
        QVERIFY(content.contains("\"superPassword\""));
        QVERIFY(!content.contains("\"super\"") && !content.contains("\"lock\""));
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

    void wrongContentsAreRefused_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<QString>("error");
        const auto row = [](const char *name, const char *from, const char *to, const char *error) {
            QTest::newRow(name) << QByteArray(from) << QByteArray(to) << QString(error);
        };
        row("syntax", "{", "[", "missing value separator at byte 16");
        row("other format", "controller 1\"", "controller 2\"",
            "not the state of a simulated controller");
        row("no Base64", "\"YmFzZSBkYXRh\"", "\"*\"", "controller: \"base\" is no Base64");
        row("beyond Latin-1", "\"Ann\"", R"("\u0416")",
            "configuration 2: \"owner\" is no line of Latin-1");
        row("line break", "\"Ann\"", R"("a\nb")",
            "configuration 2: \"owner\" is no line of Latin-1");
        row("fraction", "100000", "1.5", "controller: \"storeCapacity\" is no whole number");
        row("absurd number", "100000", "1e300", "controller: \"storeCapacity\" is no whole number");
        row("element", "\"slaves\": [", "\"slaves\": [7,",
            "controller: \"slaves\" holds something else than objects");
        row("element's member", "\"near\"", "true", "slave 1: \"name\" is not a text");
        row("inconsistent", R"("active": "first")", R"("active": "nobody")",
            "\"nobody\" is not stored");
    }

    void wrongContentsAreRefused()
    {
        QFETCH(const QByteArray, from);
        QFETCH(const QByteArray, to);
        QFETCH(const QString, error);
        QByteArray content = saved(smallState());
        const int position = content.indexOf(from);
        QVERIFY(position >= 0);
        QCOMPARE(refusalOf(content.replace(position, from.size(), to)), m_path + ": " + error);
    }
};

VELTRA4_TEST(TestStateFile)
#include "tst_statefile.moc"
