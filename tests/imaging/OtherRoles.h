#pragma once

#include <string>
#include <vector>

namespace quorvantis {

/// Does what the text in the file on descriptor 3 says: "say" and a record, "hang", "hang up" (close the
/// output and stay), "flood", "touch" (write the file again, the same, then answer), "look" (answer when
/// nothing was inherited), "meet" (answer once another decoder is there at the same time).
int playDecoder();

/// What a decoder answers when it answers.
inline const std::string answerHash(64, 'a');
inline const std::string answer = "4 2 " + answerHash + "\n";

/// Prints the identity of each file on a line of its own: the JSON of the record, or "none". Ignores and
/// blocks signals and holds further descriptors, as a host might have it do.
int playIdentifier(const std::string& patienceInMilliseconds, const std::vector<std::string>& paths);

}  // namespace quorvantis
