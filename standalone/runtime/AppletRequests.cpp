#include "standalone/runtime/AppletRequests.h"

#include "standalone/host/AppletQuestions.h"
#include "standalone/runtime/RunCommands.h"
#include "standalone/runtime/RunnerRegistry.h"
#include "standalone/variables/SystemVariables.h"

#include <QCoreApplication>

namespace standalone {

namespace {

/// False if the child doesn't take its answers.
bool send(RunCommands& commands, std::uint32_t id, int status, const std::string& text)
{
    unsigned char command[protocol::MaxRecord];
    return commands.send(command,
                         protocol::putAnswer(command, id, status, text.data(), text.size()));
}

/// A name or a value of the applet's in a line about it.
QString elided(const QString& text)
{
    constexpr int Longest = 200;
    return text.size() <= Longest ? text : text.left(Longest) + u'…';
}

QString translated(const char* source)
{
    return QCoreApplication::translate("standalone::AppletRequests", source);
}

} // namespace

AppletRequests::AppletRequests(std::string appName, std::shared_ptr<RunCommands> commands)
    : m_appName(std::move(appName)), m_commands(std::move(commands))
{
}

const char* AppletRequests::take(std::uint32_t id, protocol::RequestKind kind,
                                 const protocol::Texts& texts)
{
    {
        const std::lock_guard<std::mutex> lock(m_state->mutex);
        if (m_state->isClosed)
            return nullptr;
        if (!m_state->isAnswered)
            return "前一个请求还没有应答就发出了下一个";
        if (id != m_state->lastId + 1)
            return "请求的编号不连续";
        m_state->lastId = id;
    }
    if (kind != protocol::ReadVariable && kind != protocol::WriteVariable)
        askUser(id, kind, texts);
    else if (!useVariable(id, kind, texts))
        return "请求的应答没有被取走";
    return nullptr;
}

bool AppletRequests::useVariable(std::uint32_t id, protocol::RequestKind kind,
                                 const protocol::Texts& texts)
{
    SystemVariables& variables = SystemVariables::instance();
    const QString name = QString::fromStdString(texts[0]);
    system_variate::SystemVarInfo info;
    if (!variables.find(name, info))
        return refuse(id, translated("没有系统变量“%1”").arg(elided(name)));
    if (kind == protocol::ReadVariable)
        return answer(id, info.value);
    const QString value = QString::fromStdString(texts[1]);
    if (variables.setValue(name, value) != SystemVariables::Done)
        return refuse(id, translated("系统变量“%1”不接受值“%2”").arg(elided(name), elided(value)));
    // No faster than the listeners hear of it.
    variables.waitForListeners();
    return answer(id, QString());
}

bool AppletRequests::answer(std::uint32_t id, const QString& value) const
{
    const std::string bytes = value.toStdString();
    if (bytes.size() > protocol::MaxText)
        return refuse(id, translated("系统变量的值过长, 无法传给小程序"));
    return send(*m_commands, id, protocol::Done, bytes);
}

bool AppletRequests::refuse(std::uint32_t id, const QString& reason) const
{
    return send(*m_commands, id, protocol::Refused, reason.toStdString());
}

void AppletRequests::askUser(std::uint32_t id, protocol::RequestKind kind,
                             const protocol::Texts& texts)
{
    AppletQuestion question;
    question.kind = kind == protocol::AskYesNo  ? AppletQuestion::YesNo
                    : kind == protocol::AskText ? AppletQuestion::Text
                                                : AppletQuestion::Notice;
    question.title = texts[0].empty() ? QString::fromLocal8Bit(m_appName.c_str())
                                      : QString::fromStdString(texts[0]);
    question.text = QString::fromStdString(texts[1]);
    if (kind == protocol::AskText)
        question.value = QString::fromStdString(texts[2]);
    const auto onAnswer = [appName = m_appName, commands = m_commands, state = m_state,
                           id](AppletQuestions::Outcome outcome, const QString& value) {
        {
            const std::lock_guard<std::mutex> lock(state->mutex);
            state->question = 0;
            state->isAnswered = true;
        }
        if (outcome == AppletQuestions::StopRun && RunnerRegistry::instance().stop(appName))
            return; // who asks hears of the stop
        std::string text;
        if (outcome == AppletQuestions::Accepted)
            text = value.toStdString();
        if (text.size() > protocol::MaxText)
            send(*commands, id, protocol::Refused,
                 translated("输入的文本过长, 无法传给小程序").toStdString());
        else
            send(*commands, id,
                 outcome == AppletQuestions::Accepted ? protocol::Done : protocol::Refused, text);
    };
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    if (m_state->isClosed)
        return;
    m_state->isAnswered = false;
    m_state->question = AppletQuestions::instance().ask(question, onAnswer);
}

void AppletRequests::close()
{
    const std::lock_guard<std::mutex> lock(m_state->mutex);
    m_state->isClosed = true;
    AppletQuestions::instance().close(m_state->question);
    m_state->question = 0;
}

} // namespace standalone
