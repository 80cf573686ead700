#include "standalone/runtime/AppletRequests.h"

#include "standalone/host/AppletQuestions.h"
#include "standalone/runtime/RunCommands.h"
#include "standalone/variables/SystemVariables.h"

#include <QCoreApplication>

namespace standalone {

namespace {

void send(RunCommands& commands, std::uint32_t id, int status, const std::string& text)
{
    unsigned char command[protocol::MaxRecord];
    commands.send(command, protocol::putAnswer(command, id, status, text.data(), text.size()));
}

QString translated(const char* source)
{
    return QCoreApplication::translate("standalone::AppletRequests", source);
}

std::size_t textCount(protocol::RequestKind kind)
{
    switch (kind) {
    case protocol::ReadVariable:
        return 1;
    case protocol::AskText:
        return 3;
    default:
        return 2;
    }
}

} // namespace

AppletRequests::AppletRequests(std::string appName, std::shared_ptr<RunCommands> commands)
    : m_appName(std::move(appName)), m_commands(std::move(commands))
{
}

void AppletRequests::take(std::uint32_t id, protocol::RequestKind kind,
                          const protocol::Texts& texts)
{
    if (texts.size() != textCount(kind)) {
        refuse(id, QString());
        return;
    }
    if (kind != protocol::ReadVariable && kind != protocol::WriteVariable) {
        askUser(id, kind, texts);
        return;
    }
    SystemVariables& variables = SystemVariables::instance();
    const QString name = QString::fromStdString(texts[0]);
    system_variate::SystemVarInfo info;
    if (!variables.find(name, info)) {
        refuse(id, translated("没有系统变量“%1”").arg(name));
    } else if (kind == protocol::ReadVariable) {
        answer(id, info.value);
    } else {
        const QString value = QString::fromStdString(texts[1]);
        if (variables.setValue(name, value) == SystemVariables::Done)
            answer(id, QString());
        else
            refuse(id, translated("系统变量“%1”不接受值“%2”").arg(name, value));
    }
}

void AppletRequests::answer(std::uint32_t id, const QString& value) const
{
    const std::string bytes = value.toStdString();
    if (bytes.size() > protocol::MaxText)
        refuse(id, translated("系统变量的值过长, 无法传给小程序"));
    else
        send(*m_commands, id, protocol::Done, bytes);
}

void AppletRequests::refuse(std::uint32_t id, const QString& reason) const
{
    send(*m_commands, id, protocol::Refused, reason.toStdString());
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
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_isClosed)
        return;
    // A child asks one question at a time; one that breaks that rule loses the earlier one.
    AppletQuestions::instance().close(m_question);
    m_question = AppletQuestions::instance().ask(
        question, [commands = m_commands, id](bool accepted, const QString& value) {
            send(*commands, id, accepted ? protocol::Done : protocol::Refused,
                 accepted ? value.toStdString() : std::string());
        });
}

void AppletRequests::close()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_isClosed = true;
    AppletQuestions::instance().close(m_question);
    m_question = 0;
}

} // namespace standalone
