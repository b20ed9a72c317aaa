#pragma once

#include <cstdint>
#include <nettle/sha2.h>

#define CC_SHA256_DIGEST_LENGTH 32

using CC_LONG = std::uint32_t;
using CC_SHA256_CTX = sha256_ctx;

int CC_SHA256_Init(CC_SHA256_CTX*);
int CC_SHA256_Update(CC_SHA256_CTX*, const void* bytes, CC_LONG count);
int CC_SHA256_Final(unsigned char* digest, CC_SHA256_CTX*);
