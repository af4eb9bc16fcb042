#pragma once

#include "core/decoding.hpp"

// Voice, ringing and tone commands of the system to a digital set. Gains are signed half-decibel steps.

namespace ztdecode::digital {

void voice_mode(Decoding& d);
void beep(Decoding& d);
void mute(Decoding& d);
void feedback_dtmf(Decoding& d);
void key_release(Decoding& d);
void loudspeaker(Decoding& d);
void announce(Decoding& d);
void ring(Decoding& d);
void audio_configuration(Decoding& d);

}  // namespace ztdecode::digital
