// Opening each dialog: making it, showing it and closing it again, beside a plain dialog with as
// many widgets, which show nothing or the same texts.

#include "bench/freechannel.h"
#include "bench/operations.h"
#include "bench/plaindialog.h"
#include "bench/sampledata.h"
#include "bench/turns.h"
#include "dialogs/changeconfigurationdlg.h"
#include "dialogs/editconfigdlg.h"
#include "dialogs/lockconfigdlg.h"
#include "dialogs/newconfigurationdlg.h"
#include "dialogs/unlockconfigdlg.h"
#include "transfer/configloaddlg.h"
#include "transfer/configsavedlg.h"

#include <QTimer>

#include <memory>

namespace {

FreeChannel *channel()
{
    static FreeChannel channel;
    channel.setConfigurations(1);
    return &channel;
}

BackendVersions *versions()
{
    static BackendVersions versions = SampleData::versions();
    return &versions;
}

const QString identifier = QStringLiteral("config01");

struct List
{
    static QDialog *make() { return new ChangeConfigurationDlg(channel(), versions(), nullptr); }
    static void run(QDialog *dialog)
    {
        static_cast<ChangeConfigurationDlg *>(dialog)->update_and_exec();
    }
};

struct Save
{
    static QDialog *make() { return new ConfigSaveDlg(channel(), versions(), nullptr); }
    static void run(QDialog *dialog)
    {
        auto *save = static_cast<ConfigSaveDlg *>(dialog);
        save->setConfigurationList({{identifier, QString(), QString(), false}});
        save->runSaveDialog();
    }
};

// Without what comes before it: the file chooser is the toolkit's.
struct Load
{
    static QDialog *make() { return new ConfigLoadDlg(channel(), versions(), nullptr); }
    static void run(QDialog *dialog) { dialog->exec(); }
};

struct New
{
    static QDialog *make() { return new NewConfigurationDlg(channel(), nullptr); }
    static void run(QDialog *dialog)
    {
        static_cast<NewConfigurationDlg *>(dialog)->update_and_exec();
    }
};

template <typename Dialog>
struct OfOneConfiguration
{
    static QDialog *make() { return new Dialog(channel(), nullptr); }
    static void run(QDialog *dialog) { static_cast<Dialog *>(dialog)->update_and_exec(identifier); }
};

// One opening is too short to be timed alone.
template <typename Action>
Operations::Operation aFewTimes(Action action)
{
    return Operations::timed([action] {
        for (int i = 0; i < 5; ++i) {
            action();
        }
    });
}

template <typename Run>
void openAndClose(QDialog *dialog, Run run)
{
    QTimer::singleShot(0, dialog, &QDialog::reject); // once it has been shown
    run(dialog);
}

template <typename Kind>
Operations::Operation open(int /*size*/)
{
    return aFewTimes([] {
        const std::unique_ptr<QDialog> dialog(Kind::make());
        openAndClose(dialog.get(), Kind::run);
    });
}

template <typename Kind, PlainDialog::Texts texts>
Operations::Operation openPlain(int /*size*/)
{
    return aFewTimes([plain = PlainDialog(std::unique_ptr<QDialog>(Kind::make()).get(), texts)] {
        const std::unique_ptr<QWidget> widget(plain.make(nullptr));
        openAndClose(qobject_cast<QDialog *>(widget.get()),
                     [](QDialog *dialog) { dialog->exec(); });
    });
}

template <typename Kind>
bool addAll(const std::string &name)
{
    using Operations::add;
    return add(name, open<Kind>) && add(name + "-empty", openPlain<Kind, PlainDialog::Texts::None>)
        && add(name + "-texts", openPlain<Kind, PlainDialog::Texts::Same>)
        && takeTurns({name, name + "-empty", name + "-texts"}, {1}, 21);
}

const bool areAdded = addAll<List>("open-list") && addAll<Save>("open-save")
    && addAll<Load>("open-load") && addAll<New>("open-new")
    && addAll<OfOneConfiguration<EditConfigDlg>>("open-edit")
    && addAll<OfOneConfiguration<LockConfigDlg>>("open-lock")
    && addAll<OfOneConfiguration<UnlockConfigDlg>>("open-unlock");

} // namespace
