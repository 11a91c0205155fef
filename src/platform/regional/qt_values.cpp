#include "platform/regional/qt_values.h"

#include <QStringDecoder>

namespace platform::regional {
namespace {

QDate QtDayZero()
{
    return {1899, 12, 30};
}

}  // namespace

QString ToQt(std::string_view utf8)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

std::string FromQt(const QString& text)
{
    return text.toStdString();
}

QDate DateOf(DateTime moment)
{
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    return QtDayZero().addDays((day - DayZero()).count());
}

QTime TimeOf(DateTime moment)
{
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>((moment - day).count()));
}

DateTime FromQt(QDate date, QTime time)
{
    return DayZero() + std::chrono::days(QtDayZero().daysTo(date)) +
           std::chrono::milliseconds(time.msecsSinceStartOfDay());
}

}  // namespace platform::regional
