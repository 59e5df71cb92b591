#include "store/statementcache.h"

#include <sqlite3.h>

#include <utility>

namespace slipbook::store {

Statement::Statement(sqlite3_stmt* stmt, std::shared_ptr<const StatementPlan> plan)
    : stmt_(stmt), plan_(std::move(plan)) {}

Statement::Statement(Statement&& other) noexcept
    : stmt_(std::exchange(other.stmt_, nullptr)),
      plan_(std::move(other.plan_)),
      cache_(std::move(other.cache_)),
      key_(std::move(other.key_)),
      generation_(other.generation_),
      texts_(std::move(other.texts_)) {}

Statement& Statement::operator=(Statement&& other) noexcept {
    if (this != &other) {
        // The texts stay until the statement that reads them is reset.
        Release();
        stmt_ = std::exchange(other.stmt_, nullptr);
        plan_ = std::move(other.plan_);
        cache_ = std::move(other.cache_);
        key_ = std::move(other.key_);
        generation_ = other.generation_;
        texts_ = std::move(other.texts_);
    }
    return *this;
}

char* Statement::TextRoom(qsizetype bytes) {
    texts_.resize(bytes);
    return texts_.data();
}

Statement::~Statement() {
    Release();
}

void Statement::Release() {
    if (stmt_ == nullptr) {
        return;
    }
    if (cache_) {
        cache_->Return(key_, generation_, std::exchange(stmt_, nullptr));
        cache_.reset();
    } else {
        sqlite3_finalize(std::exchange(stmt_, nullptr));
    }
}

StatementCache::StatementCache(sqlite3* db, int capacity) : db_(db), capacity_(capacity) {}

StatementCache::~StatementCache() {
    Detach();
}

StatementCache::Entry* StatementCache::Find(const QString& key) {
    auto it = entries_.find(key);
    if (it == entries_.end()) {
        return nullptr;
    }
    order_.splice(order_.begin(), order_, it->second);
    return &it->first;
}

StatementCache::Entry& StatementCache::Add(const QString& key,
                                           std::shared_ptr<const StatementPlan> plan) {
    if (auto it = entries_.find(key); it != entries_.end()) {
        Drop(it);
    }
    while (!order_.empty() && static_cast<int>(entries_.size()) >= capacity_) {
        Drop(entries_.find(order_.back()));
    }
    order_.push_front(key);
    auto it = entries_.insert(key, {Entry{std::move(plan), nullptr}, order_.begin()});
    return it->first;
}

Statement StatementCache::Lend(const QString& key, Entry& entry) {
    if (entry.idle == nullptr) {
        return Statement();
    }
    return Lend(key, entry, std::exchange(entry.idle, nullptr));
}

Statement StatementCache::Lend(const QString& key, Entry& entry, sqlite3_stmt* fresh) {
    Statement s(fresh, entry.plan);
    s.cache_ = shared_from_this();
    s.key_ = key;
    s.generation_ = generation_;
    return s;
}

void StatementCache::Return(const QString& key, quint64 generation, sqlite3_stmt* stmt) {
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    if (db_ != nullptr && generation == generation_) {
        if (auto it = entries_.find(key); it != entries_.end() && it->first.idle == nullptr) {
            it->first.idle = stmt;
            return;
        }
    }
    sqlite3_finalize(stmt);
}

void StatementCache::Drop(
    QHash<QString, std::pair<Entry, std::list<QString>::iterator>>::iterator it) {
    sqlite3_finalize(it->first.idle);
    order_.erase(it->second);
    entries_.erase(it);
}

void StatementCache::Clear() {
    for (auto& [entry, at] : entries_) {
        sqlite3_finalize(entry.idle);
    }
    entries_.clear();
    order_.clear();
    ++generation_;
}

void StatementCache::Detach() {
    Clear();
    db_ = nullptr;
}

}  // namespace slipbook::store
