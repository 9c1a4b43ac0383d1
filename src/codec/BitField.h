// Where a parameter's bits lie in a message, and reading and writing them. A field of L bits
// at bit offset O of byte B is the integer of the ceil((O + L) / 8) bytes from B, read in the
// field's byte order, shifted right by O, low L bits. These functions run for every parameter
// of every decoded message, so they are inline and check nothing: callers make sure that the
// bytes exist and that 1 <= L <= 64.
#pragma once

#include <cstdint>

namespace Korvel {

struct FieldPlace {
    uint32_t byteIndex = 0;  // B
    uint32_t bitLength = 0;  // L
    uint32_t byteCount = 0;  // ceil((O + L) / 8)
    uint8_t bitOffset = 0;   // O, 0..7
    bool motorola = false;   // first byte most significant

    uint32_t BitPos() const { return 8 * byteIndex + bitOffset; }
};

inline FieldPlace MakeFieldPlace(uint32_t bitPos, uint32_t bitLength, bool motorola) {
    FieldPlace place;
    place.byteIndex = bitPos / 8;
    place.bitOffset = static_cast<uint8_t>(bitPos % 8);
    place.bitLength = bitLength;
    place.byteCount = static_cast<uint32_t>((static_cast<uint64_t>(place.bitOffset) + bitLength + 7) / 8);
    place.motorola = motorola;
    return place;
}

// The low `bits` bits set (bits 1..64).
inline uint64_t LowBits(uint32_t bits) {
    return bits >= 64 ? ~uint64_t{0} : (uint64_t{1} << bits) - 1;
}

// Where byte `i` of the field's bytes starts in the field's value, in bits: negative for the
// first byte of an unaligned field (its low O bits belong to something else).
inline int32_t ByteShift(const FieldPlace& place, uint32_t i) {
    const uint32_t significance = place.motorola ? place.byteCount - 1 - i : i;
    return static_cast<int32_t>(8 * significance) - static_cast<int32_t>(place.bitOffset);
}

inline uint64_t ExtractBits(const uint8_t* message, const FieldPlace& place) {
    const uint8_t* bytes = message + place.byteIndex;
    uint64_t value = 0;
    if (place.bitOffset == 0 && place.byteCount <= 8) {
        // The common case: whole bytes, no shift.
        if (place.motorola) {
            for (uint32_t i = 0; i < place.byteCount; ++i) {
                value = (value << 8) | bytes[i];
            }
        } else {
            for (uint32_t i = place.byteCount; i-- > 0;) {
                value = (value << 8) | bytes[i];
            }
        }
    } else {
        for (uint32_t i = 0; i < place.byteCount; ++i) {
            const int32_t shift = ByteShift(place, i);
            if (shift < 0) {
                value |= static_cast<uint64_t>(bytes[i]) >> -shift;
            } else if (shift < 64) {
                value |= static_cast<uint64_t>(bytes[i]) << shift;
            }
        }
    }
    return value & LowBits(place.bitLength);
}

// Writes the low L bits of `value`; every bit outside the field keeps its value.
inline void InsertBits(uint8_t* message, const FieldPlace& place, uint64_t value) {
    uint8_t* bytes = message + place.byteIndex;
    value &= LowBits(place.bitLength);
    const int32_t length = static_cast<int32_t>(place.bitLength);
    for (uint32_t i = 0; i < place.byteCount; ++i) {
        const int32_t shift = ByteShift(place, i);
        // Bits j of this byte hold field bit shift + j; those from 0 to L - 1 are the field's.
        const int32_t first = shift < 0 ? -shift : 0;
        const int32_t last = length - shift < 8 ? length - shift : 8;  // one past
        if (first >= last) {
            continue;
        }
        const uint8_t mask = static_cast<uint8_t>(((1u << last) - 1u) & ~((1u << first) - 1u));
        uint8_t part = 0;
        if (shift < 0) {
            part = static_cast<uint8_t>(value << -shift);
        } else if (shift < 64) {
            part = static_cast<uint8_t>(value >> shift);
        }
        bytes[i] = static_cast<uint8_t>((bytes[i] & ~mask) | (part & mask));
    }
}

// Two's complement of `bits` bits (1..64) as a signed number.
inline int64_t SignExtend(uint64_t value, uint32_t bits) {
    if (bits >= 64) {
        return static_cast<int64_t>(value);
    }
    const uint64_t sign = uint64_t{1} << (bits - 1);
    return static_cast<int64_t>((value ^ sign) - sign);
}

}  // namespace Korvel
