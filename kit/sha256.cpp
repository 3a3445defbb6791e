#include "sha256.h"

namespace Ksx::Kit {

void Sha256::add(const char* bytes, std::size_t size)
{
    sha256_update(&m_state, size, reinterpret_cast<const std::uint8_t*>(bytes));
}

void Sha256::add(const QByteArray& bytes)
{
    add(bytes.constData(), static_cast<std::size_t>(bytes.size()));
}

QByteArray Sha256::result()
{
    QByteArray sum(SHA256_DIGEST_SIZE, Qt::Uninitialized);
    sha256_digest(&m_state, SHA256_DIGEST_SIZE, reinterpret_cast<std::uint8_t*>(sum.data()));
    return sum;
}

QByteArray Sha256::digitsOf(const QByteArray& bytes)
{
    Sha256 sum;
    sum.add(bytes);
    return sum.result().toHex();
}

} // namespace Ksx::Kit
