// Scans over UTF-16 text for a few given units, eight units at a time where
// the processor has SSE2 (every x86-64 does) and one at a time elsewhere.
// Dump data is long runs of units that mean nothing to the scans that skip
// it (string bodies, numbers, commas); these find the next one that does.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace sqlantlr {

// A set of N units to look for.
template <std::size_t N>
class UnitSet {
public:
    template <typename... Units>
    explicit UnitSet(Units... units) : units_{static_cast<char16_t>(units)...}
    {
        static_assert(sizeof...(Units) == N, "one unit for each place");
#if defined(__SSE2__)
        for (std::size_t i = 0; i < N; ++i) {
            wanted_[i] = _mm_set1_epi16(static_cast<short>(units_[i]));
        }
#endif
    }

    bool contains(char16_t unit) const
    {
        for (char16_t wanted : units_) {
            if (unit == wanted) {
                return true;
            }
        }
        return false;
    }

    // The first unit of [p, end) in the set, or end.
    const char16_t *findIn(const char16_t *p, const char16_t *end) const
    {
#if defined(__SSE2__)
        for (; end - p >= 8; p += 8) {
            const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            __m128i hit = _mm_cmpeq_epi16(chunk, wanted_[0]);
            for (std::size_t i = 1; i < N; ++i) {
                hit = _mm_or_si128(hit, _mm_cmpeq_epi16(chunk, wanted_[i]));
            }
            const int mask = _mm_movemask_epi8(hit);
            if (mask != 0) {
                return p + (__builtin_ctz(static_cast<unsigned>(mask)) >> 1);
            }
        }
#endif
        for (; p < end; ++p) {
            if (contains(*p)) {
                return p;
            }
        }
        return end;
    }

private:
    char16_t units_[N];
#if defined(__SSE2__)
    __m128i wanted_[N];
#endif
};

template <typename... Units>
UnitSet(Units...) -> UnitSet<sizeof...(Units)>;

// LF and CR, the units that end a line.
inline const UnitSet<2> lineEndUnits(u'\n', u'\r');

// How many line feeds [p, end) holds, and whether it holds a carriage return.
inline std::size_t countLineFeeds(const char16_t *p, const char16_t *end, bool *returns)
{
    std::size_t count = 0;
    bool sawReturn = false;
#if defined(__SSE2__)
    // Each lane of the sum counts up to 8 units a round (a match is -1, taken
    // away); it is folded into the count before a lane could overflow.
    const __m128i feed = _mm_set1_epi16(u'\n');
    const __m128i carriage = _mm_set1_epi16(u'\r');
    __m128i returnsSeen = _mm_setzero_si128();
    while (end - p >= 8) {
        __m128i sum = _mm_setzero_si128();
        for (int rounds = 0; rounds < 8192 && end - p >= 8; ++rounds, p += 8) {
            const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i *>(p));
            sum = _mm_sub_epi16(sum, _mm_cmpeq_epi16(chunk, feed));
            returnsSeen = _mm_or_si128(returnsSeen, _mm_cmpeq_epi16(chunk, carriage));
        }
        alignas(16) std::uint16_t lanes[8];
        _mm_store_si128(reinterpret_cast<__m128i *>(lanes), sum);
        for (std::uint16_t lane : lanes) {
            count += lane;
        }
    }
    sawReturn = _mm_movemask_epi8(returnsSeen) != 0;
#endif
    for (; p < end; ++p) {
        count += *p == u'\n' ? 1 : 0;
        sawReturn = sawReturn || *p == u'\r';
    }
    *returns = sawReturn;
    return count;
}

} // namespace sqlantlr
