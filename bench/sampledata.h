#pragma once

#include <QByteArray>

#include <random>

/// Bytes without any pattern, the same in every run.
inline QByteArray sampleBytes(int size)
{
    std::minstd_rand random; // NOLINT(cert-msc51-cpp): no secret
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes) {
        byte = static_cast<char>(random() >> 8U);
    }
    return bytes;
}
