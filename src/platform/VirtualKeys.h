#pragma once

/// Codes of keys as the options file and the input hook use them. Letters and digits have their capital
/// ASCII code, F1 to F16 follow one another from VirtualKey::F1.
namespace VirtualKey
{
inline constexpr int Tab = 9;     ///< with and without Shift
inline constexpr int Return = 13; ///< the keypad's Enter too
inline constexpr int Escape = 27;
inline constexpr int Digit0 = 48;
inline constexpr int A = 65;
inline constexpr int F1 = 112;
inline constexpr int F4 = 115;
inline constexpr int F16 = 127;
} // namespace VirtualKey
