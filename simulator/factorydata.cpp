#include "simulator/factorydata.h"

#include <QRandomGenerator>

namespace {

constexpr int defaultBytes = 6 * 1024;
constexpr quint32 defaultSeed = 4;

} // namespace

QByteArray FactoryData::bytes(int size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray data(size, Qt::Uninitialized);
    for (char &byte : data) {
        byte = static_cast<char>(generator.bounded(256));
    }
    return data;
}

QByteArray FactoryData::defaults()
{
    static const QByteArray made = bytes(defaultBytes, defaultSeed);
    return made;
}
