#include "standalone/model_service/json/DocumentPlace.h"

#include <vector>

namespace standalone {

QString DocumentPlace::text() const
{
    constexpr std::size_t shownAtAnEnd = 12;
    constexpr int longestName = 64;
    std::vector<const DocumentPlace*> places;
    for (const auto* place = this; place->m_above; place = place->m_above)
        places.push_back(place);
    QString text;
    for (std::size_t left = places.size(); left > 0; --left) {
        if (places.size() > 2 * shownAtAnEnd && left == places.size() - shownAtAnEnd) {
            text += QStringLiteral("…");
            left = shownAtAnEnd;
        }
        const auto& place = *places[left - 1];
        if (place.m_index >= 0) {
            text += QStringLiteral("[%1]").arg(place.m_index);
            continue;
        }
        if (!text.isEmpty())
            text += QLatin1Char('.');
        const auto shown = place.m_name.substr(0, longestName);
        text += QString::fromUtf8(shown.data(), static_cast<int>(shown.size()));
    }
    return text;
}

} // namespace standalone
