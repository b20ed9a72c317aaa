// A program of somebody else's that has a Boost.JSON of its own beside the library. It prints what both read
// of a text, and the hash of a picture's pixels.
//
//     neighbour JSON PICTURE

#include <boost/json/src.hpp>
#include <cstdio>

#include "quorvantis/imaging/AttachmentIdentity.h"
#include "quorvantis/json/JSONDocument.h"

int main(int, char** arguments) {
    const auto theirs = boost::json::parse(arguments[1]).at("number").as_int64();
    const auto ours = quorvantis::JSONDocument::parse(arguments[1])->root()["number"].integer();
    const auto picture = quorvantis::HelperIO::attachmentIdentity(arguments[2]);
    std::printf("%ld %ld %s\n", static_cast<long>(theirs), static_cast<long>(ours.value_or(0)),
                picture.pixelHash.value_or("no pixels").c_str());
}
