// A process of its own that runs SQL on a store: run_sql FILE SQL. With "hold" as a third argument it then
// keeps its connection and its transaction until it is killed.
#include <SQLiteCpp/Database.h>
#include <iostream>
#include <sqlite3.h>
#include <unistd.h>

int main(int argc, char** argv) {
  constexpr int kPatience = 5000;
  if (argc < 3) return 2;
  try {
    SQLite::Database database(argv[1], SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, kPatience);
    database.exec(argv[2]);
    std::cout << "done" << std::endl;
    while (argc > 3) pause();
    return 0;
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
