#include "base/file_reading.h"
#include "model/process_blocks.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"
#include "standalone/model_service/stores/project_tables.h"
#include "tests/standalone/model_samples.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

namespace facade = sdk_ui_interface::processedit;
using namespace process_json_edit;

namespace {

const QString libraryApp = QStringLiteral("library_app");
const std::string localApp = "library_app";

std::string readTable(const char* name)
{
    const QString path = text(PE_TABLES_FOLDER "/") + text(name);
    return file_reading::read(path, file_reading::MostOfTable).content.toStdString();
}

std::shared_ptr<SequenceProcessBlock> addCall(const QString& from, const QString& to)
{
    auto call = applet_fixture::addStep<SequenceProcessBlock>(libraryApp, from, text("1"),
                                                              step_type::Sequence, "");
    call->sourceKind = SequenceProcessBlock::AppletSequence;
    call->sequenceId = to.toStdString();
    return call;
}

QString uuidOf(const QString& sequence, const QString& parent, int stepType,
               logicBlockType baseType = BasicStep)
{
    return facade::createProcess(libraryApp, sequence, parent, baseType, stepType, -1);
}

void putVariable(processVariableType scope, const std::string& owner, const std::string& name)
{
    auto variable = process_edit::getVariable(process_edit::addVariable(localApp, scope, owner));
    variable.name = name;
    process_edit::updateVariable(localApp, variable, scope);
}

QStringList namesOf(const std::vector<processVariable>& variables)
{
    QStringList names;
    for (const auto& variable : variables)
        names.append(QString::fromStdString(variable.name));
    return names;
}

} // namespace

/// Step tables, quick steps and templates.
class ModelLibraryTest : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { samples::forget(libraryApp); }

    void defaultStepsHoldEveryKind()
    {
        const QString sequence = facade::createSeuqence(libraryApp, text("s"));
        QVERIFY(!isDefaultStepLoaded());
        const auto builtIn = facade::getProcess(libraryApp, uuidOf(sequence, text("1"), 1));
        QCOMPARE(builtIn->name, std::string("if"));
        QVERIFY(builtIn->property.hasChildren && builtIn->property.editable);

        samples::LogCatcher log;
        loadDefaultStepJson(readTable("defaultStep.json"));
        QVERIFY2(log.lines.isEmpty(), qPrintable(log.lines.join(u'\n')));
        QVERIFY(isDefaultStepLoaded());
        for (int type = 1; type <= 27; ++type) {
            const QString uuid = uuidOf(sequence, text("1"), type);
            const auto kind = process_edit::getDefaultBaseStepProperty(BasicStep, type);
            QVERIFY2(uuid.isEmpty() == kind.name.empty(), qPrintable(QString::number(type)));
            if (uuid.isEmpty())
                continue;
            const auto block = facade::getProcess(libraryApp, uuid);
            QCOMPARE(block->name, kind.name);
            QCOMPARE(block->stepType(), type);
            QVERIFY(block->property.editable);
            QCOMPARE(block->property.hasChildren,
                     step_kinds::isOpener(type) || step_kinds::isBranch(type));
            QCOMPARE(block->property.draggable, block->property.showInPalette);
            QVERIFY(!step_kinds::isCloser(type) || !block->property.showInPalette);
        }
        const auto folders = process_edit::getAllDefaultBaseStepProperty();
        QCOMPARE(folders.back().stepType, int(step_type::QuickStepFolder));
        QCOMPARE(folders.back().baseType, BasicStep);
        for (std::size_t i = 0; i + 1 < folders.size(); ++i)
            QVERIFY(!folders[i].children.empty() && folders[i].baseType == NoBlock);
    }

    void defaultVariablesAreLocked()
    {
        loadDefaultVariable(readTable("defaultVariable.json"));
        const auto variables = process_edit::getAllGlobalVariable();
        QVERIFY(!variables.empty());
        QCOMPARE(variables.front().name, std::string("global_ret"));
        for (const auto& variable : variables)
            QVERIFY(variable.isLocked && variable.scope == GlobalVariable &&
                    !variable.uuid.empty());
    }

    void customKindsMakeDiagnosticSteps()
    {
        const QString sequence = facade::createSeuqence(libraryApp, text("s"));
        BaseStepProperty folder;
        folder.name = "诊断";
        folder.baseType = NoBlock;
        for (const int type : {1, 4}) {
            BaseStepProperty kind;
            kind.name = type == 1 ? "读数据" : "安全访问";
            kind.baseType = DiagnosticStep;
            kind.stepType = type;
            kind.extra["udsJson"] = "{}";
            folder.children.push_back(kind);
        }
        process_edit::addCustomStepProperty(localApp, {folder});
        QCOMPARE(
            process_edit::getCustomBaseStepProperty(localApp, DiagnosticStep, "读数据").stepType,
            1);
        QVERIFY(process_edit::getCustomBaseStepProperty("other", DiagnosticStep, 4).name.empty());
        const auto block =
            facade::getProcess(libraryApp, uuidOf(sequence, text("0"), 4, DiagnosticStep));
        QVERIFY(std::dynamic_pointer_cast<UdsProcessBlock>(block));
        QCOMPARE(block->name, std::string("安全访问"));
        QCOMPARE(block->property.extra.at("udsJson"), std::string("{}"));
        facade::renameProcessCAppletName(libraryApp, text("renamed"));
        QVERIFY(process_edit::getCustomBaseStepProperty(localApp, DiagnosticStep, 4).name.empty());
        QVERIFY(
            !process_edit::getCustomBaseStepProperty("renamed", DiagnosticStep, 4).name.empty());
        facade::renameProcessCAppletName(text("renamed"), libraryApp);
        process_edit::removeAllCustomStepProperty(localApp);
        QVERIFY(uuidOf(sequence, text("0"), 4, DiagnosticStep).isEmpty());
    }

    void quickStepsAreCopiesOfTheirOwn()
    {
        const QString sequence = facade::createSeuqence(libraryApp, text("s"));
        const QString loop = uuidOf(sequence, text("1"), step_type::While);
        const QString delay = uuidOf(sequence, loop, step_type::Delay);
        const QString jump = uuidOf(sequence, loop, step_type::Goto);
        std::dynamic_pointer_cast<GotoProcessBlock>(facade::getProcess(libraryApp, jump))
            ->targetUuid = delay.toStdString();
        const QString id = facade::addQuickStepInfo(libraryApp, loop);
        QVERIFY(!id.isEmpty() && id != loop);
        QVERIFY(facade::addQuickStepInfo(libraryApp, text("no such")).isEmpty());
        facade::getProcess(libraryApp, loop)->name = "changed later";

        QTemporaryDir folder;
        const QString path = folder.filePath(text("quickStep.json"));
        facade::saveQuickStepJsonStr(path, EveryBusiness);
        facade::removeQuickStepInfo(id);
        QVERIFY(facade::getQuickStepInfo().isEmpty());
        const auto file = file_reading::read(path, file_reading::MostOfTable);
        facade::loadQuickStepJsonStr(QString::fromUtf8(file.content));
        QVERIFY(isQucikStepLoaded());
        QCOMPARE(facade::getQuickStepInfoVector({id, text("no such")}).size(), 1);

        const QString made =
            facade::createProcessInfoByQuickStep(libraryApp, sequence, text("2"), id, 0);
        const auto block = facade::getProcess(libraryApp, made);
        QCOMPARE(block->name, std::string("while"));
        QCOMPARE(block->children.size(), std::size_t(2));
        const auto copiedJump = std::dynamic_pointer_cast<GotoProcessBlock>(block->children[1]);
        QCOMPARE(copiedJump->targetUuid, block->children[0]->uuid);
        QVERIFY(block->children[0]->uuid != delay.toStdString());
        QVERIFY(!facade::createProcessInfoByQuickStep(libraryApp, sequence, text("2"), id, 0)
                     .isEmpty());
        standalone::forgetProjectTables(); // another project
        QVERIFY(facade::getQuickStepInfo().isEmpty());
    }

    void brokenTemplatesAreTold()
    {
        const QString sequence = facade::createSeuqence(libraryApp, text("s"));
        const QString id = facade::addProcessTemplate(libraryApp, sequence).first;
        auto templates =
            QJsonDocument::fromJson(facade::generateTemplateJsonStr().toUtf8()).object();
        const auto sound = templates.value(QLatin1String("templates")).toArray().last();
        templates[QLatin1String("templates")] = QJsonArray{sound, 7, sound, QJsonObject()};
        samples::LogCatcher log;
        facade::loadTemplateJsonStr(QString::fromUtf8(QJsonDocument(templates).toJson()));
        QCOMPARE(facade::getAllProcessTemplate().size(), std::size_t(2));
        QCOMPARE(QString::fromStdString(facade::getAllProcessTemplate().front().id), id);
        const QString told = log.lines.join(u'\n');
        for (const char* line : {"templates[1]", "templates[2]", "templates[3]"})
            QVERIFY2(told.contains(QLatin1String(line)), qPrintable(told));
        facade::loadTemplateJsonStr(text("{}"));
    }

    void templatesFreezeWhatASequenceNeeds()
    {
        const QString first = facade::createSeuqence(libraryApp, text("first"));
        const QString second = facade::createSeuqence(libraryApp, text("second"));
        const QString third = facade::createSeuqence(libraryApp, text("third"));
        facade::createSeuqence(libraryApp, text("not_called"));
        const auto call = addCall(first, second);
        call->preStatements = "used = 1;";
        addCall(second, third);
        addCall(third, first);
        putVariable(SequenceVariable, first.toStdString(), "a");
        putVariable(SequenceVariable, third.toStdString(), "c");
        putVariable(ProcessVariable, localApp, "used");
        putVariable(ProcessVariable, localApp, "unused");

        const auto [id, name] = facade::addProcessTemplate(libraryApp, first);
        QCOMPARE(name, text("first"));
        QCOMPARE(facade::addProcessTemplate(libraryApp, first).second, text("first_1"));
        QVERIFY(facade::addProcessTemplate(libraryApp, text("no such")).first.isEmpty());
        call->name = "changed later";

        const auto info = facade::getProcessTemplateByID(id);
        QCOMPARE(info.mainSequence.name, std::string("first"));
        QCOMPARE(info.subSequences.size(), std::size_t(2));
        QCOMPARE(info.subSequences[1].id, third.toStdString());
        QCOMPARE(info.blocks.size(), std::size_t(1));
        QVERIFY(info.blocks[0]->name != "changed later");
        QCOMPARE(info.subBlocks.size(), std::size_t(2));
        QCOMPARE(namesOf(info.sequenceVariables), QStringList({text("a"), text("c")}));
        QCOMPARE(namesOf(info.processVariables), QStringList(text("used")));
        QCOMPARE(info.processVariables[0].ownerId, localApp);

        const auto copy = readOneTemplateJsonStr(generateOneTemplateJsonStr(info));
        QCOMPARE(generateOneTemplateJsonStr(copy), generateOneTemplateJsonStr(info));
        QCOMPARE(copy.subSequences[1].mainFlow, info.subSequences[1].mainFlow);
        QVERIFY(readOneTemplateJsonStr("").id.empty());
        QVERIFY(readOneTemplateJsonStr("{\"id\": \"x\"}").id.empty());
    }

    void templatesCallTemplates()
    {
        const QString inner = facade::createSeuqence(libraryApp, text("inner"));
        const auto [innerId, innerName] = facade::addProcessTemplate(libraryApp, inner);
        const QString outer = facade::createSeuqence(libraryApp, text("outer"));
        const auto call = addCall(outer, {});
        call->sourceKind = SequenceProcessBlock::TemplateSequence;
        call->templateId = innerId.toStdString();
        call->templateJson = generateOneTemplateJsonStr(facade::getProcessTemplateByID(innerId));
        for (const bool isInProject : {true, false}) {
            if (!isInProject)
                facade::removeProcessTemplate(innerId);
            QCOMPARE(process_edit::isHaveTemplateInfo(innerId.toStdString()), isInProject);
            const QString id = facade::addProcessTemplate(libraryApp, outer).first;
            const auto subs = facade::getProcessTemplateByID(id).subTemplates;
            QCOMPARE(subs.size(), std::size_t(1));
            QCOMPARE(subs.at(innerId.toStdString()).mainSequence.name, std::string("inner"));
        }
    }

    void theTemplateFileKeepsItsTemplates()
    {
        const QString first = facade::createSeuqence(libraryApp, text("first"));
        const QString id = facade::addProcessTemplate(libraryApp, first).first;
        facade::renameProcessTemplate(id, text("新的名字"));
        auto document =
            QJsonDocument::fromJson(facade::generateTemplateJsonStr().toUtf8()).object();
        document.insert(text("future"), 1);
        const QString json = QString::fromUtf8(QJsonDocument(document).toJson());
        facade::removeAllProcessTemplate(false);
        QVERIFY(!isTempldateLoaded() && facade::getAllProcessTemplate().empty());

        facade::loadTemplateJsonStr(json);
        QVERIFY(isTempldateLoaded());
        QCOMPARE(facade::getProcessTemplateByID(id).name, text("新的名字").toStdString());
        QCOMPARE(facade::generateTemplateJsonStr(), json);
        facade::loadTemplateJsonStr(text("not json"));
        QCOMPARE(facade::getAllProcessTemplate().size(), std::size_t(1));
        facade::removeAllProcessTemplate(true);
        QVERIFY(isTempldateLoaded());
    }
};

PE_TEST("model_library_test", ModelLibraryTest)
#include "model_library_test.moc"
