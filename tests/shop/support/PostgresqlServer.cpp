#include "tests/shop/support/PostgresqlServer.h"

#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace kvo::shop {
namespace {

// The server refuses to run as root; the package creates this user for it.
constexpr const char* kServerUser = "postgres";

std::filesystem::path Programs() {
  const std::filesystem::path versions = "/usr/lib/postgresql";
  std::filesystem::path newest;
  if (std::filesystem::exists(versions))
    for (const auto& version : std::filesystem::directory_iterator(versions))
      if (std::filesystem::exists(version.path() / "bin/initdb") && version.path() > newest)
        newest = version.path();
  if (newest.empty())
    throw std::runtime_error("PostgreSQL was not found; install the package postgresql");
  return newest / "bin";
}

std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string Output(const std::string& command, int& status) {
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("popen: " + command);
  std::string output;
  std::array<char, 4096> buffer{};
  while (const std::size_t read = fread(buffer.data(), 1, buffer.size(), pipe))
    output.append(buffer.data(), read);
  status = pclose(pipe);
  return output;
}

// Switches from root to the server's user.
bool BecomeServerUser() {
  if (geteuid() != 0) return true;
  const passwd* user = getpwnam(kServerUser);
  return user != nullptr && initgroups(kServerUser, user->pw_gid) == 0 &&
         setgid(user->pw_gid) == 0 && setuid(user->pw_uid) == 0;
}

}  // namespace

PostgresqlServer::PostgresqlServer() : programs_(Programs()) {
  std::string pattern = (std::filesystem::temp_directory_path() / "kvo-pg-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp: " + pattern);
  folder_ = pattern;
  std::ofstream(folder_ / "password") << kPassword << '\n';
  if (geteuid() == 0) {
    const passwd* user = getpwnam(kServerUser);
    if (user == nullptr) throw std::runtime_error("There is no user \"postgres\"");
    for (const auto& each : {folder_, folder_ / "password"})
      if (chown(each.c_str(), user->pw_uid, user->pw_gid) != 0)
        throw std::runtime_error("chown: " + each.string());
  }
  RunAs("initdb", Quoted((programs_ / "initdb").string()) + " -D " +
                      Quoted((folder_ / "data").string()) + " -U " + std::string(kUser) +
                      " -A scram-sha-256 --pwfile=" + Quoted((folder_ / "password").string()) +
                      " -E UTF8 --locale=C.UTF-8 --no-sync --no-instructions");
  Start();
}

PostgresqlServer::~PostgresqlServer() {
  Stop();
  std::filesystem::remove_all(folder_);
}

void PostgresqlServer::RunAs(const std::string& what, const std::string& command) const {
  int status = 0;
  const std::string runAs = geteuid() == 0 ? "cd / && setpriv --reuid=" + std::string(kServerUser) +
                                                 " --regid=" + kServerUser + " --init-groups "
                                           : "";
  const std::string output = Output(runAs + command, status);
  if (status != 0) throw std::runtime_error(what + " failed: " + output);
}

void PostgresqlServer::Start() {
  const std::string data = (folder_ / "data").string();
  const std::string log = (folder_ / "server.log").string();
  const std::string program = (programs_ / "postgres").string();
  server_ = fork();
  if (server_ < 0) throw std::runtime_error("fork failed");
  if (server_ == 0) {
    if (!BecomeServerUser()) _exit(126);
    prctl(PR_SET_PDEATHSIG, SIGQUIT);  // it must not outlive the test, however that ends
    if (chdir("/") != 0 || freopen(log.c_str(), "a", stderr) == nullptr) _exit(126);
    execl(program.c_str(), program.c_str(), "-D", data.c_str(), "-k", folder_.c_str(), "-c",
          "listen_addresses=", "-c", "fsync=off", "-c", "shared_buffers=64MB",
          static_cast<char*>(nullptr));
    _exit(127);
  }
  using namespace std::chrono_literals;
  const auto deadline = std::chrono::steady_clock::now() + 60s;
  int status = 1;
  while (status != 0) {
    Output(Quoted((programs_ / "pg_isready").string()) + " -q -h " + Quoted(folder_.string()),
           status);
    int ended = 0;
    if (status != 0 && (waitpid(server_, &ended, WNOHANG) == server_ ||
                        std::chrono::steady_clock::now() > deadline)) {
      std::ifstream lines(log);
      const std::string said{std::istreambuf_iterator<char>(lines), {}};
      throw std::runtime_error("The PostgreSQL server did not start: " + said);
    }
    if (status != 0) std::this_thread::sleep_for(20ms);
  }
}

void PostgresqlServer::Stop() {
  if (server_ == 0) return;
  kill(server_, SIGINT);  // ends all sessions
  waitpid(server_, nullptr, 0);
  server_ = 0;
}

std::string PostgresqlServer::Uri() const {
  return "postgresql://shop:geh%27eim%407@/postgres?host=" + folder_.string();
}

std::string PostgresqlServer::Pairs() const {
  return "postgresql://host=" + folder_.string() +
         " dbname=postgres user=shop password='geh\\'eim@7'";
}

std::string PostgresqlServer::Run(const std::string& statements) const {
  int status = 0;
  const std::string output =
      Output("PGPASSWORD=" + Quoted(kPassword) + ' ' + Quoted((programs_ / "psql").string()) +
                 " -X -q -A -t -v ON_ERROR_STOP=1 -h " + Quoted(folder_.string()) + " -U " +
                 std::string(kUser) + " -d postgres -c " + Quoted(statements),
             status);
  if (status != 0) throw std::runtime_error("psql failed: " + output);
  return output;
}

void PostgresqlServer::FillProducts(int count) const {
  // Creates the table in one statement, so that it keeps its records in order.
  Run("CREATE UNLOGGED TABLE Products AS SELECT 'P-' || lpad(i::text, 7, '0') AS ProductNo,"
      " 'Artikel ' || i AS Desc1,"
      " CASE WHEN i % 10 = 9 THEN NULL ELSE 'Beschreibung von Artikel ' || i END AS Desc2"
      " FROM generate_series(0, " +
      std::to_string(count) + " - 1) AS i;");
}

}  // namespace kvo::shop
