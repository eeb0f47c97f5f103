#include "simulator/statefile.h"
#include "tests/simulator/answers.h"
#include "tests/support/filesizelimit.h"
#include "tests/support/testmain.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
}

} // namespace

class TestStateFile : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_path = m_folder->filePath("state.json");
    }

    void aStateComesBackAsItWas_data()
    {
        QTest::addColumn<bool>("isSample");
        QTest::newRow("sample") << true;
        QTest::newRow("all bytes that texts can have") << false;
    }

    void aStateComesBackAsItWas()
    {
        QFETCH(const bool, isSample);
        ControllerState state = isSample ? ControllerState::sample() : smallState();
        if (!isSample) {
            state.isEmbedded = false;
            state.storeCapacity = 9007199254740991;
            state.activity = "measuring";
            state.configurations[1].owner = "\x80\xff \"quoted\" \\ 'x'";
            state.configurations[2].password = SaltedHash::of("secret");
            state.configurations[2].data = QByteArray("\0\xff", 2);
        }
        QString error;
        QVERIFY2(StateFile::save(m_path, state, &error), qPrintable(error));
        ControllerState loaded;
        QVERIFY2(StateFile::load(m_path, &loaded, &error), qPrintable(error));
        QVERIFY(loaded == state);
    }

    void noPasswordStandsInTheFile()
    {
        QString error;
        QVERIFY(StateFile::save(m_path, ControllerState::sample(), &error));
        const QByteArray content = contentOf(m_path);
        QVERIFY(content.contains("\"superPassword\""));
        QVERIFY(!content.contains("\"super\"") && !content.contains("\"lock\""));
    }

    void aFailedWriteLeavesTheOldFile()
    {
        QString error;
        QVERIFY(StateFile::save(m_path, smallState(), &error));
        const QByteArray before = contentOf(m_path);
        {
            const FileSizeLimit limit(20000);
            QVERIFY(!StateFile::save(m_path, ControllerState::sample(), &error));
        }
        QVERIFY(error.startsWith(m_path + ": "));
        QCOMPARE(contentOf(m_path), before);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), QStringList("state.json"));
    }

    void aFolderThatIsNotThereIsReported()
    {
        QString error;
        const QString path = m_folder->filePath("nowhere/state.json");
        QVERIFY(!StateFile::save(path, smallState(), &error));
        QVERIFY(error.startsWith(path + ": "));
    }

    void aMissingFileIsReported()
    {
        ControllerState state = smallState();
        QString error;
        QVERIFY(!StateFile::load(m_path, &state, &error));
        QCOMPARE(error, m_path + ": No such file or directory");
        QVERIFY(state == smallState());
    }

    void everyTruncationIsRefused()
    {
        QString error;
        QVERIFY(StateFile::save(m_path, smallState(), &error));
        const QByteArray whole = contentOf(m_path).trimmed();
        for (int size = 0; size < whole.size();
             size += size < 200 || size > whole.size() - 200 ? 1 : 37) {
            write(m_path, whole.left(size));
            ControllerState state;
            QVERIFY(!StateFile::load(m_path, &state, &error));
            QVERIFY(state == ControllerState());
        }
    }

    void everyMemberIsNeededAndTyped_data()
    {
        init(); // is not called for data functions
        QTest::addColumn<QString>("key");
        QString error;
        QVERIFY(StateFile::save(m_path, smallState(), &error));
        const QStringList keys = QJsonDocument::fromJson(contentOf(m_path)).object().keys();
        QCOMPARE(keys.size(), 17);
        for (const QString &key : keys) {
            QTest::newRow(qPrintable(key)) << key;
        }
    }

    void everyMemberIsNeededAndTyped()
    {
        QFETCH(const QString, key);
        QString error;
        QVERIFY(StateFile::save(m_path, smallState(), &error));
        const QJsonObject whole = QJsonDocument::fromJson(contentOf(m_path)).object();

        QJsonObject spoiled = whole;
        spoiled.remove(key);
        write(m_path, QJsonDocument(spoiled).toJson());
        ControllerState state;
        QVERIFY(!StateFile::load(m_path, &state, &error));
        QVERIFY(key == "format" || error.endsWith('"' + key + "\" is missing"));

        spoiled.insert(key, QJsonValue::Null);
        write(m_path, QJsonDocument(spoiled).toJson());
        QVERIFY(!StateFile::load(m_path, &state, &error));
        QVERIFY(key == "format" || error.contains('"' + key + "\" is not "));
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
        QString found;
        QVERIFY(StateFile::save(m_path, smallState(), &found));
        QByteArray content = contentOf(m_path);
        const int position = content.indexOf(from);
        QVERIFY(position >= 0);
        write(m_path, content.replace(position, from.size(), to));
        ControllerState state;
        QVERIFY(!StateFile::load(m_path, &state, &found));
        QCOMPARE(found, m_path + ": " + error);
        QVERIFY(state == ControllerState());
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

VELTRA4_TEST(TestStateFile)
#include "tst_statefile.moc"
