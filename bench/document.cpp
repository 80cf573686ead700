// An applet's document to disk and back, and the bare JSON library with a bare file on the same
// bytes.

#include "bench/logic_samples.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/documents/AppletStorage.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

/// The document of a sample, saved once.
class SavedSample
{
public:
    explicit SavedSample(int steps) : m_builder(steps), m_storage([] {}, nullptr)
    {
        LogicMaster::instance()->setPaths(name(), folder(), folder());
        m_storage.setAppName(name());
        m_storage.save(QString());
    }
    ~SavedSample() { sdk_ui_interface::processedit::removeApp(name()); }

    QString name() const { return m_builder.sample().appName; }
    QString folder() const { return m_folder.path() + QLatin1Char('/'); }
    AppletStorage& storage() { return m_storage; }
    /// Gives a step another name: a document that is on the disk already isn't written again.
    void change()
    {
        const auto& uuids = m_builder.sample().blockUuids;
        sdk_ui_interface::processedit::getProcess(name(), uuids.first())->name =
            "change " + std::to_string(++m_changes);
    }
    QByteArray bytes() const
    {
        QFile file(applet_documents::documentPath(folder()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_folder;
    logic_samples::Builder m_builder;
    AppletStorage m_storage;
    int m_changes = 0;
};

void save_document(benchmark::State& state)
{
    SavedSample sample(int(state.range(0)));
    for (auto _ : state) {
        sample.change();
        sample.storage().save(QString());
    }
}

// The document, flushed to the disk; its backup, read back and flushed too.
void save_document_yardstick(benchmark::State& state)
{
    const SavedSample sample(int(state.range(0)));
    const QJsonObject root = QJsonDocument::fromJson(sample.bytes()).object();
    const auto put = [&sample](const char* name, const QByteArray& text) {
        QSaveFile file(sample.folder() + QString::fromLatin1(name));
        file.open(QIODevice::WriteOnly);
        file.write(text);
        file.commit();
    };
    for (auto _ : state) {
        put("bare.pedt", QJsonDocument(root).toJson());
        QFile written(sample.folder() + QStringLiteral("bare.pedt"));
        written.open(QIODevice::ReadOnly);
        put("bare.bak", written.readAll());
    }
}

void load_document(benchmark::State& state)
{
    const SavedSample sample(int(state.range(0)));
    for (auto _ : state)
        applet_documents::read(sample.name(), sample.folder(), false);
}

void load_document_yardstick(benchmark::State& state)
{
    const SavedSample sample(int(state.range(0)));
    for (auto _ : state) {
        QFile file(applet_documents::documentPath(sample.folder()));
        file.open(QIODevice::ReadOnly);
        benchmark::DoNotOptimize(QJsonDocument::fromJson(file.readAll()));
    }
}

} // namespace

BENCHMARK(save_document)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(save_document_yardstick)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(load_document)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(load_document_yardstick)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
