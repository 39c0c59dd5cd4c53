#!/usr/bin/env python3
"""Makes camera.wav, the shutter sound: a mirror that goes up and a curtain that falls, 95 ms together.

Usage: make_camera_wav.py [OUTPUT]   (default: camera.wav beside this script)
The result is the same on every machine: the noise comes from a generator of its own.
"""

import math
import pathlib
import struct
import sys
import wave

RATE = 22050
FRAMES = RATE * 95 // 1000
PEAK = 20000  # of 32767: loud enough, and no shock in headphones
FADE = RATE * 8 // 1000

# start in ms, strength, decay of the noise in ms, pitch of the body in Hz, decay of the body in ms
STROKES = [
    (1.0, 1.00, 3.5, 310.0, 9.0),
    (14.0, 0.35, 2.0, 900.0, 3.0),
    (48.0, 0.80, 5.0, 220.0, 12.0),
    (58.0, 0.30, 2.5, 760.0, 4.0),
]


def noise(seed):
    """White noise between -1 and 1."""
    state = seed
    while True:
        state = (1664525 * state + 1013904223) % 2**32
        yield state / 2**31 - 1.0


def stroke(samples, start, strength, noise_decay, pitch, body_decay, seed):
    """Adds one mechanical click: a burst of softened noise over a short tone."""
    source = noise(seed)
    first = int(start * RATE / 1000)
    soft = 0.0
    for i in range(first, len(samples)):
        ms = (i - first) * 1000 / RATE
        soft += 0.55 * (next(source) - soft)
        burst = soft * math.exp(-ms / noise_decay)
        body = 0.5 * math.sin(2 * math.pi * pitch * ms / 1000) * math.exp(-ms / body_decay)
        samples[i] += strength * (burst + body)


def main():
    here = pathlib.Path(__file__).resolve().parent
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here / "camera.wav"
    samples = [0.0] * FRAMES
    for number, parameters in enumerate(STROKES):
        stroke(samples, *parameters, seed=12345 + number)
    for i in range(FADE):
        samples[FRAMES - 1 - i] *= i / FADE
    scale = PEAK / max(abs(sample) for sample in samples)
    with wave.open(str(target), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(struct.pack(f"<{FRAMES}h", *(round(sample * scale) for sample in samples)))


if __name__ == "__main__":
    main()
