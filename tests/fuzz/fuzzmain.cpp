// What the fuzzer of clang++ calls. Each target is an executable of its own: KESTRIX_FUZZ_TARGET names it.
#include "data/filename.h"
#include "fuzztargets.h"

#include <QCoreApplication>
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

const TestSupport::FuzzTarget& target()
{
    static const TestSupport::FuzzTarget* const found =
        TestSupport::findFuzzTarget(KESTRIX_FUZZ_TARGET);
    return *found;
}

std::string textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

std::size_t give(const std::string& text, std::uint8_t* data, std::size_t maxSize)
{
    const std::size_t size = std::min(text.size(), maxSize);
    std::memcpy(data, text.data(), size);
    return size;
}

// A part of what is mutated alike serves as the other document.
std::string& lastInput()
{
    static std::string input;
    return input;
}

} // namespace

extern "C" {

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    Orv::installFileNameCodec();
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string fault = target().check(textOf(data, size));
    if (!fault.empty()) {
        std::fprintf(stderr, "%s: %s\n", target().name, fault.c_str());
        std::abort();
    }
    return 0;
}

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned seed)
{
    constexpr unsigned BytesOnly = 5; // one of so many mutants is not made by the grammar
    if (target().mutated == nullptr || seed % BytesOnly == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const std::string input = textOf(data, size);
    const std::string other = lastInput().empty() ? input : lastInput();
    lastInput() = input;
    return give(target().mutated(input, other, seed / BytesOnly), data, maxSize);
}

} // extern "C"
