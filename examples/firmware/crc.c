// Checksums: CRC-32 by table, CRC-16 bit by bit.
#include "firmware.h"

static uint32_t crcTable[256];

static uint32_t TableEntry(uint32_t index) {
  uint32_t value = index;
  for (int bit = 0; bit < 8; ++bit) value = (value & 1) ? (value >> 1) ^ 0xedb88320u : value >> 1;
  return value;
}

void Crc32Init(void) {
  for (uint32_t i = 0; i < 256; ++i) crcTable[i] = TableEntry(i);
}

uint32_t Crc32(const uint8_t* bytes, uint32_t size) {
  uint32_t crc = ~0u;
  while (size--) crc = crcTable[(crc ^ *bytes++) & 0xff] ^ (crc >> 8);
  return ~crc;
}

uint16_t Crc16(const uint8_t* bytes, uint32_t size) {
  uint16_t crc = 0xffff;
  for (uint32_t i = 0; i < size; ++i) {
    crc ^= (uint16_t)(bytes[i] << 8);
    for (int bit = 0; bit < 8; ++bit) {
      if (crc & 0x8000)
        crc = (uint16_t)((crc << 1) ^ 0x1021);
      else
        crc = (uint16_t)(crc << 1);
    }
  }
  return crc;
}
