#pragma once

#include <QString>
#include <stdexcept>

namespace slipbook::store {

// Error numbers the program reacts to by number; the rest are reported as they come.
namespace err {
constexpr int Generic = 3000;
constexpr int CannotOpen = 3049;  // damaged file or not a logbook
constexpr int InUse = 3051;       // another copy of the program holds the file
constexpr int Moved = 3044;       // the file was moved, replaced or deleted while open
constexpr int NoCurrentRecord = 3021;
constexpr int UpdateWithoutEdit = 3020;
constexpr int DuplicateKey = 3022;
constexpr int Syntax = 3075;
constexpr int NoSuchTable = 3078;
constexpr int ItemNotFound = 3265;  // a field name the row set does not have
constexpr int TypeMismatch = 3464;
constexpr int TableExists = 3010;
constexpr int ReadOnly = 3027;
constexpr int DiskFull = 3035;
constexpr int Overflow = 6;
}  // namespace err

// The error object of the store: a number, a source and a description, as the error boxes show.
class DbError : public std::runtime_error {
public:
    DbError(int number, QString source, QString description)
        : std::runtime_error(description.toStdString()),
          number_(number),
          source_(std::move(source)),
          description_(std::move(description)) {}

    int number() const { return number_; }
    const QString& source() const { return source_; }
    const QString& description() const { return description_; }

private:
    int number_;
    QString source_;
    QString description_;
};

}  // namespace slipbook::store
