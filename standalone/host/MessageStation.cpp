#include "model/services/host.h"

#include <QHash>

namespace {

// Buffers are real; no service is on the bus yet, so every request stays without an answer.
class MessageStation : public IMessageStation
{
public:
    quint32 allocateBuffer(int size) override
    {
        if (size < 0)
            return 0;
        m_buffers.insert(++m_lastHandle, QByteArray(size, '\0'));
        return m_lastHandle;
    }

    QByteArray* buffer(quint32 handle) override
    {
        const auto found = m_buffers.find(handle);
        return found == m_buffers.end() ? nullptr : &found.value();
    }

    void freeBuffer(quint32 handle) override { m_buffers.remove(handle); }

    QByteArray sendRequest(const Request&) override { return QByteArray(); }

private:
    QHash<quint32, QByteArray> m_buffers;
    quint32 m_lastHandle = 0;
};

} // namespace

IMessageStation* getMessageStation()
{
    static MessageStation station;
    return &station;
}
