#pragma once
// The JSON writer every ZorvoJSON document and conf.json is written into: RapidJSON's Writer over a
// UTF-8 string buffer with default flags.

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace ZorvoDSG {

using ZorvoJSONBuffer = rapidjson::GenericStringBuffer<rapidjson::UTF8<char>, rapidjson::CrtAllocator>;
using ZorvoJSONWriter = rapidjson::Writer<ZorvoJSONBuffer, rapidjson::UTF8<char>, rapidjson::UTF8<char>,
                                          rapidjson::CrtAllocator, 0>;

}  // namespace ZorvoDSG
