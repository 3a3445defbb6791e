// The SHA-256 sum of bytes.
#pragma once

#include <QByteArray>
#include <nettle/sha2.h>

namespace Ksx::Kit {

// The sum as FIPS 180-4 has it. Nettle uses the instructions that processors have for it, which Qt
// does not: seven times as many bytes a second.
class Sha256
{
public:
    Sha256() { sha256_init(&m_state); }

    void add(const char* bytes, std::size_t size);
    void add(const QByteArray& bytes);
    // Returns the 32 bytes of the sum, and begins another one.
    QByteArray result();

    // Returns the sum of the bytes in 64 digits of base 16.
    static QByteArray digitsOf(const QByteArray& bytes);

private:
    sha256_ctx m_state = {};
};

} // namespace Ksx::Kit
