#include "network/hostlookup.h"

#include <QDeadlineTimer>
#include <QHostInfo>

#include <chrono>
#include <future>
#include <memory>
#include <thread>

QList<QHostAddress> addressesOf(const QString &host, const QDeadlineTimer &deadline)
{
    const QHostAddress address(host);
    if (!address.isNull()) {
        return {address};
    }
    // The system's lookup cannot be told how long it may take.
    const auto promise = std::make_shared<std::promise<QList<QHostAddress>>>();
    std::future<QList<QHostAddress>> answer = promise->get_future();
    std::thread([promise, host] {
        promise->set_value(QHostInfo::fromName(host).addresses());
    }).detach();
    const std::chrono::milliseconds patience(deadline.remainingTime());
    return answer.wait_for(patience) == std::future_status::ready ? answer.get()
                                                                  : QList<QHostAddress>();
}
