// Fingerprints by XXH3.
// SPDX-License-Identifier: MIT

#include "fingerprint.h"

#include <xxhash.h>

#include <new>

namespace geometry {

struct Fingerprinter::State {
    XXH3_state_t* hash = XXH3_createState();
    ~State() { XXH3_freeState(hash); }
};

Fingerprinter::Fingerprinter() : _state(std::make_unique<State>())
{
    if (!_state->hash)
        throw std::bad_alloc();
    XXH3_128bits_reset(_state->hash);
}

Fingerprinter::~Fingerprinter() = default;

void Fingerprinter::add(const void* bytes, std::size_t size)
{
    if (size > 0)
        XXH3_128bits_update(_state->hash, bytes, size);
}

Fingerprint Fingerprinter::result() const
{
    const XXH128_hash_t hash = XXH3_128bits_digest(_state->hash);
    return {hash.low64, hash.high64};
}

} // namespace geometry
