#include <CommonCrypto/CommonDigest.h>
#include <crt_externs.h>
#include <libproc.h>
#include <string>
#include <unistd.h>

int CC_SHA256_Init(CC_SHA256_CTX* context) {
    sha256_init(context);
    return 1;
}

int CC_SHA256_Update(CC_SHA256_CTX* context, const void* bytes, CC_LONG count) {
    sha256_update(context, count, static_cast<const std::uint8_t*>(bytes));
    return 1;
}

int CC_SHA256_Final(unsigned char* digest, CC_SHA256_CTX* context) {
    sha256_digest(context, CC_SHA256_DIGEST_LENGTH, digest);
    return 1;
}

char*** _NSGetArgv() {
    static char first[] = "the/first argument";
    static char* arguments[] = {first, nullptr};
    static char** answer = arguments;
    return &answer;
}

int proc_pidpath(int process, void* buffer, std::uint32_t size) {
    const std::string link = "/proc/" + std::to_string(process) + "/exe";
    return static_cast<int>(readlink(link.c_str(), static_cast<char*>(buffer), size));
}
