# The Homebrew formula. The three addresses and the checksum stand for a release that does not exist yet: whoever makes
# one puts its archive into `url` and `sha256`, the repository into `head`, and the project's page into `homepage`.
class QuorvantisMcp < Formula
  desc "Access to the Quorvantis desktop application for AI coding agents"
  homepage "https://quorvantis.invalid/"
  url "https://quorvantis.invalid/quorvantis-mcp-1.0.0.tar.gz"
  sha256 "0000000000000000000000000000000000000000000000000000000000000000"
  head "https://quorvantis.invalid/quorvantis-mcp.git", branch: "main"

  depends_on "boost" => :build
  depends_on "cmake" => :build
  depends_on "ninja" => :build
  uses_from_macos "sqlite"

  # Built into the programs, as an archive, which the package of Homebrew does not have.
  resource "utf8proc" do
    url "https://github.com/JuliaStrings/utf8proc/archive/refs/tags/v2.11.3.tar.gz"
    sha256 "abfed50b6d4da51345713661370290f4f4747263ee73dc90356299dfc7990c78"
  end

  def install
    (buildpath/"build/utf8proc").install resource("utf8proc")
    system "make", "-C", "build/utf8proc", "libutf8proc.a"
    system "cmake", "-S", ".", "-B", "build", "-G", "Ninja", *std_cmake_args
    system "cmake", "--build", "build"
    system "cmake", "--install", "build"
  end

  test do
    assert_equal "Invalid arguments: Expected serve with agent identity.\n",
                 shell_output("#{bin}/quorvantis-mcp serve 2>&1", 1)

    standin = spawn "#{bin}/quorvantis-standin", "--folder", testpath.to_s
    begin
      100.times do
        break if (testpath/"Runtime/quorvantis.sock").socket?

        sleep 0.1
      end
      manifest = JSON.parse((testpath/"Integrations/Agents/codex.json").read)
      ENV["QUORVANTIS_TESTING"] = "1"
      ENV["QUORVANTIS_APP_SUPPORT"] = testpath.to_s
      answer = pipe_output("#{bin}/quorvantis-mcp serve --agent codex --client-id #{manifest["clientID"]} " \
                           "--credential-file #{manifest["credentialPath"]}",
                           '{"id":1,"method":"tools/call","params":{"name":"get_integration_status"}}', 0)
      assert JSON.parse(answer)["result"]["structuredContent"]["running"]
      assert JSON.parse(shell_output("#{bin}/quorvantis-doctor --json"))["ok"]
    ensure
      Process.kill "TERM", standin
      Process.wait standin
    end
  end
end
