#pragma once

#include "core/decoding.hpp"

namespace ztdecode::s0 {

// What the software of the S0 module reports of itself: its resets, refused commands and anomalies.
// byte 3: kind; any kind that is not one of the others is an anomaly
void report(Decoding& d);

// " etat N1= NAME" of a layer-1 state.
void layer1_state(Decoding& d, const Byte& state);

}  // namespace ztdecode::s0
