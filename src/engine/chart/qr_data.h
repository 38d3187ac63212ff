#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "engine/chart/barcode.h"

/// The codewords of a QR code: data in byte mode, cut into blocks, with their error correction.
namespace velora::engine {

inline constexpr int kMostQrVersion = 40;

/// Modules of a version that carry codewords, in bits.
int qr_raw_bits(int version);
/// Bytes of data, mode and length among them, that a version holds at a level.
int qr_data_codewords(int version, QrLevel level);
/// The smallest version for so many bytes of text. @throws BarcodeError
int qr_version_for(size_t bytes, QrLevel level);
/// Remainder of the Reed-Solomon division by the generator of that degree.
std::vector<uint8_t> qr_correction(const std::vector<uint8_t>& data, int degree);
/// All codewords in the order in which they are drawn.
std::vector<uint8_t> qr_codewords(std::string_view bytes, int version, QrLevel level);

}  // namespace velora::engine
