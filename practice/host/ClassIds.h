#pragma once
// The identity of the server's classes.

#include "practice/server/Registration.h"

#include <array>

namespace kalvrooms::practice {

inline constexpr ServerClass ApplicationClass = {
    L"KALVCOMSERVERLib.KalvApplication",
    L"Kalvero practice host: application",
    // {477D64AA-25F3-4630-AA22-265D470B0ACE}
    {0x477d64aa, 0x25f3, 0x4630, {0xaa, 0x22, 0x26, 0x5d, 0x47, 0x0b, 0x0a, 0xce}}};
inline constexpr ServerClass RoomFilterClass = {
    L"KALVCOMSERVERLib.KalvRoomFilter",
    L"Kalvero practice host: room filter",
    // {37735792-5B4C-4C4E-ABFE-CFAA08DAC90D}
    {0x37735792, 0x5b4c, 0x4c4e, {0xab, 0xfe, 0xcf, 0xaa, 0x08, 0xda, 0xc9, 0x0d}}};
inline constexpr ServerClass AttributeCatalogueClass = {
    L"KALVCOMSERVERLib.KalvAttributeCatalogue",
    L"Kalvero practice host: attribute catalogue",
    // {1A35FFD2-409D-4993-AF42-2512FBF3BA54}
    {0x1a35ffd2, 0x409d, 0x4993, {0xaf, 0x42, 0x25, 0x12, 0xfb, 0xf3, 0xba, 0x54}}};
inline constexpr ServerClass ControlClass = {
    L"KALVCOMSERVERLib.PracticeControl",
    L"Kalvero practice host: control for tests",
    // {98535326-9C0E-48AE-A620-5603C046DE3C}
    {0x98535326, 0x9c0e, 0x48ae, {0xa6, 0x20, 0x56, 0x03, 0xc0, 0x46, 0xde, 0x3c}}};

inline constexpr std::array<const ServerClass*, 4> ServerClasses = {
    &ApplicationClass, &RoomFilterClass, &AttributeCatalogueClass, &ControlClass};

} // namespace kalvrooms::practice
