#pragma once

#include <cstdint>

/// The codes of the records that a reader of masks knows, under the names that the stream format
/// gives them: the record type in the high byte, the data type in the low one.
namespace zelmo::record {

constexpr std::uint16_t header = 0x0002;
constexpr std::uint16_t units = 0x0305;
constexpr std::uint16_t endlib = 0x0400;
constexpr std::uint16_t bgnstr = 0x0502;
constexpr std::uint16_t strname = 0x0606;
constexpr std::uint16_t endstr = 0x0700;
constexpr std::uint16_t boundary = 0x0800;
constexpr std::uint16_t path = 0x0900;
constexpr std::uint16_t sref = 0x0A00;
constexpr std::uint16_t aref = 0x0B00;
constexpr std::uint16_t text = 0x0C00;
constexpr std::uint16_t layer = 0x0D02;
constexpr std::uint16_t datatype = 0x0E02;
constexpr std::uint16_t width = 0x0F03;
constexpr std::uint16_t xy = 0x1003;
constexpr std::uint16_t endel = 0x1100;
constexpr std::uint16_t sname = 0x1206;
constexpr std::uint16_t colrow = 0x1302;
constexpr std::uint16_t node = 0x1500;
constexpr std::uint16_t texttype = 0x1602;
constexpr std::uint16_t string = 0x1906;
constexpr std::uint16_t strans = 0x1A01;
constexpr std::uint16_t mag = 0x1B05;
constexpr std::uint16_t angle = 0x1C05;
constexpr std::uint16_t pathtype = 0x2102;
constexpr std::uint16_t box = 0x2D00;
constexpr std::uint16_t bgnextn = 0x3003;
constexpr std::uint16_t endextn = 0x3103;

}  // namespace zelmo::record
