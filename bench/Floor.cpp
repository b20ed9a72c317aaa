// The least that a server can do: it starts, reads the manifest and the credential, writes the session
// record, and answers, but reads no JSON. What it is asked it tells by a few letters, and a broker's reply it
// passes on as it is. How far the server is from this is what JSON, checks and identities cost.
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <unistd.h>

static std::string folder;

static void readFile(const std::string& path) {
    char bytes[4096];
    const int file = open(path.c_str(), O_RDONLY);
    if (file < 0) std::exit(1);
    while (read(file, bytes, sizeof bytes) > 0) continue;
    close(file);
}

static void recordSession() {
    const std::string path = folder + "/Integrations/Agents/codex-mcp-session.json",
                      temporary = path + ".new";
    const std::string record = "{\"processID\":" + std::to_string(getpid()) + "}";
    const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || write(file, record.data(), record.size()) < 0) std::exit(1);
    close(file);
    rename(temporary.c_str(), path.c_str());
    chmod(path.c_str(), 0600);
}

static std::string_view exchange(std::string_view query) {
    static std::string reply;  // its memory is kept
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "%s/Runtime/quorvantis.sock", folder.c_str());
    const int connection = socket(AF_UNIX, SOCK_STREAM, 0);
    const std::string request = R"({"requestID":"1","query":")" + std::string(query) + "\"}\n";
    if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        write(connection, request.data(), request.size()) < 0)
        std::exit(1);
    reply.clear();
    char bytes[4096];
    for (ssize_t count; !reply.ends_with('\n') && (count = read(connection, bytes, sizeof bytes)) > 0;)
        reply.append(bytes, static_cast<std::size_t>(count));
    close(connection);
    return std::string_view(reply).substr(0, reply.size() - 1);
}

static std::string_view result(std::string_view line) {
    static const std::string tools = "{\"tools\":[" + std::string(7900, ' ') + "]}";
    if (line.find("tools/list") != line.npos) return tools;
    const std::string_view key = "\"query\":\"";
    const auto query = line.find(key);
    if (query == line.npos) return "{}";
    const auto rest = line.substr(query + key.size());
    return exchange(rest.substr(0, rest.find('"')));
}

static bool answer(std::string_view result) {
    const std::string_view start = R"({"jsonrpc":"2.0","id":1,"result":)", end = "}\n";
    const auto part = [](std::string_view text) {
        return iovec{const_cast<char*>(text.data()), text.size()};
    };
    const iovec parts[] = {part(start), part(result), part(end)};
    return writev(STDOUT_FILENO, parts, 3) > 0;
}

int main(int, char** arguments) {
    folder = std::getenv("QUORVANTIS_APP_SUPPORT");
    readFile(folder + "/Integrations/Agents/codex.json");
    readFile(arguments[7]);  // serve --agent A --client-id C --credential-file FILE
    for (std::string lines;;) {
        char bytes[65536];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return 0;
        lines.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end; (end = lines.find('\n')) != lines.npos; lines.erase(0, end + 1)) {
            const std::string_view line(lines.data(), end);
            if (line.find("initialize") != line.npos) recordSession();
            if (!answer(result(line))) return 1;
        }
    }
}
