// Opening each dialog: making it, showing it and closing it again, beside a plain dialog with as
// many widgets, which show nothing or the same texts.

#include "bench/freechannel.h"
#include "bench/plaindialog.h"
#include "bench/sampledata.h"
#include "dialogs/changeconfigurationdlg.h"
#include "dialogs/editconfigdlg.h"
#include "dialogs/lockconfigdlg.h"
#include "dialogs/newconfigurationdlg.h"
#include "dialogs/unlockconfigdlg.h"
#include "transfer/configloaddlg.h"
#include "transfer/configsavedlg.h"

#include <benchmark/benchmark.h>

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

template <typename Run>
void openAndClose(QDialog *dialog, Run run)
{
    QTimer::singleShot(0, dialog, &QDialog::reject); // once it has been shown
    run(dialog);
}

template <typename Kind>
void open(benchmark::State &state)
{
    for (auto _ : state) {
        const std::unique_ptr<QDialog> dialog(Kind::make());
        openAndClose(dialog.get(), Kind::run);
    }
}

template <typename Kind, PlainDialog::Texts texts>
void openPlain(benchmark::State &state)
{
    const PlainDialog plain(std::unique_ptr<QDialog>(Kind::make()).get(), texts);
    for (auto _ : state) {
        const std::unique_ptr<QWidget> widget(plain.make(nullptr));
        openAndClose(qobject_cast<QDialog *>(widget.get()),
                     [](QDialog *dialog) { dialog->exec(); });
    }
}

template <typename Kind>
void add(const std::string &name)
{
    const auto addOne = [&name](const char *variant, void (*measure)(benchmark::State &)) {
        benchmark::RegisterBenchmark(("open/" + name + variant).c_str(), measure)
            ->Unit(benchmark::kMicrosecond);
    };
    addOne("/ours", open<Kind>);
    addOne("/plain", openPlain<Kind, PlainDialog::Texts::None>);
    addOne("/texts", openPlain<Kind, PlainDialog::Texts::Same>);
}

const bool areAdded = [] {
    add<List>("list");
    add<Save>("save");
    add<Load>("load");
    add<New>("new");
    add<OfOneConfiguration<EditConfigDlg>>("edit");
    add<OfOneConfiguration<LockConfigDlg>>("lock");
    add<OfOneConfiguration<UnlockConfigDlg>>("unlock");
    return true;
}();

} // namespace
