#include "xmlproxy/XmlName.h"

#include <chrono>
#include <exception>
#include <random>

namespace
{

std::uint64_t makeSecret() noexcept
{
    // For a system without a source of random numbers: where things lie in memory, and the time.
    std::uint64_t secret = reinterpret_cast<std::uintptr_t>(&makeSecret) * 0x9E3779B97F4A7C15U;
    secret ^= static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    try
    {
        std::random_device device;
        secret ^= static_cast<std::uint64_t>(device()) << 32U | device();
    }
    catch (const std::exception&) // NOLINT(bugprone-empty-catch): the rest has to do
    {
    }
    return secret | 1U;
}

std::uint64_t& ownSecret() noexcept
{
    static std::uint64_t s_Secret = makeSecret();
    return s_Secret;
}

} // namespace

std::uint64_t XmlName::secret() noexcept
{
    return ownSecret();
}

void XmlName::shareSecret(std::uint64_t i_Secret) noexcept
{
    ownSecret() = i_Secret;
}
