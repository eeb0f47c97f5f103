#include "bench/sampledata.h"

#include <random>

namespace {

QByteArray randomBytes()
{
    std::minstd_rand random; // NOLINT(bugprone-random-generator-seed, cert-msc51-cpp): no secret
    QByteArray bytes(SampleData::mebibyte, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(random() >> 8U);
    }
    return bytes;
}

} // namespace

BackendVersions SampleData::versions()
{
    return {{4, 2, 0}, {1, 27, 0}, {4, 1, 0}, QStringLiteral("XQU")};
}

QByteArray SampleData::bytes(int size)
{
    static const QByteArray random = randomBytes();
    QByteArray bytes = random.left(size);
    bytes.reserve(size);
    while (bytes.size() < size) {
        bytes += random.left(size - bytes.size());
    }
    return bytes;
}

void SampleData::fill(FullBackup *backup, int size)
{
    backup->name = QStringLiteral("tracker-7");
    backup->serial = QStringLiteral("00001234");
    backup->ptVersion = {4, 2, 0};
    backup->ctVersion = {4, 1, 0};
    backup->systemModel = QStringLiteral("XQU");
    backup->slaves = QStringList{QStringLiteral("slave-a"), QStringLiteral("slave-b")};
    backup->net = QStringLiteral("192.168.0.7/24 gw 192.168.0.1");
    backup->domain = QStringLiteral("example.com");
    backup->nameServer = QStringLiteral("192.168.0.2");
    backup->ntpServer = QStringLiteral("192.168.0.3");
    backup->activeConfig = QStringLiteral("standard");
    backup->configData = bytes(size);
}
