#include <atomic>

#include "engine/execute.h"
#include "engine/server/server.h"

namespace engine {

class SessionImpl {
 public:
  SessionImpl(std::shared_ptr<Server> server, const std::string& login, const std::string& password,
              const std::string& database, const SessionClient& client)
      : server_(std::move(server)),
        store_(server_->sharedInstance()),
        executor_(store_, context_, cancelled_) {
    store_.beginStatement();
    struct End {
      Store& store;
      ~End() { store.endStatement(); }
    } end{store_};
    context_.login = verifyLogin(store_, login, password);
    open(database);
    entry_.client = client;
    entry_.login = context_.login;
    entry_.loginTime = entry_.lastBatch = currentTicks();
    entry_.cancelled = &cancelled_;
    entry_.store = &store_;
    entry_.database = store_.currentDatabase();
    store_.instance().sessions().enter(entry_);
    context_.spid = entry_.spid;
    store_.setSession(&entry_);
  }
  ~SessionImpl() { store_.instance().sessions().leave(entry_); }

  void execute(std::string_view batch, std::vector<Parameter>& parameters, ResultSink& sink) {
    cancelled_ = false;
    if (entry_.killed)
      throw Error(596, "Cannot continue the execution because the session is in the kill state.", 21);
    const Running running(*this);
    try {
      parameters.empty() ? executor_.run(batch, sink) : executor_.run(batch, parameters, sink);
    } catch (const std::bad_alloc&) {
      executor_.rollbackAll();
      throw Error(701, "There is insufficient system memory to run this query.", 17);
    }
  }
  void cancel() {
    cancelled_ = true;
    sqlite3_interrupt(store_.handle());
  }
  void rest() { store_.rest(); }
  const std::string& database() const { return context_.database; }
  PlanStatistics statistics() const { return executor_.statistics(); }
  Executor& executor() { return executor_; }
  const SessionEntry& entry() const { return entry_; }
  void reset(bool keepTransaction) { executor_.reset(firstDatabase_, keepTransaction); }

 private:
  // What others see of the session while a batch runs and after it.
  struct Running {
    explicit Running(SessionImpl& session) : self(session) {
      self.entry_.running = true;
      self.entry_.lastBatch = currentTicks();
    }
    ~Running() {
      self.entry_.running = false;
      self.entry_.transactions = self.executor_.openTransactions();
      self.entry_.database = self.store_.currentDatabase();
    }
    SessionImpl& self;
  };
  void open(const std::string& wanted) {
    const std::string database = wanted.empty() ? defaultDatabaseOf(store_, context_.login) : wanted;
    const auto refuse = [&] {
      if (wanted.empty()) return Error(4064, "Cannot open user default database. Login failed.", 11);
      return Error(4060,
                   "Cannot open database \"" + database + "\" requested by the login. The login failed.", 11);
    };
    if (!store_.databaseExists(database) || !hasAccess(store_, database, context_.login)) throw refuse();
    context_.database = store_.database(database).name;
    store_.useDatabase(context_.database);
    firstDatabase_ = context_.database;
  }

  std::shared_ptr<Server> server_;
  std::atomic<bool> cancelled_ = false;
  SessionContext context_;
  std::string firstDatabase_;
  Store store_;
  Executor executor_;
  SessionEntry entry_;
};

Session::Session(std::shared_ptr<Server> server, const std::string& login, const std::string& password,
                 const std::string& database, const SessionClient& client)
    : impl_(std::make_unique<SessionImpl>(std::move(server), login, password, database, client)) {}

Session::~Session() = default;

void Session::execute(std::string_view batch, ResultSink& sink) {
  std::vector<Parameter> none;
  impl_->execute(batch, none, sink);
}
void Session::execute(std::string_view batch, std::vector<Parameter>& parameters, ResultSink& sink) {
  impl_->execute(batch, parameters, sink);
}
std::vector<ResultColumn> Session::describe(std::string_view batch,
                                            const std::vector<Parameter>& parameters) {
  return impl_->executor().describe(batch, parameters);
}
int Session::openTransactions() const {
  return impl_->executor().openTransactions();
}
void Session::rest() {
  impl_->rest();
}
int Session::spid() const {
  return impl_->entry().spid;
}
bool Session::killed() const {
  return impl_->entry().killed;
}
bool Session::committed() const {
  return impl_->executor().committed();
}
void Session::reset(bool keepTransaction) {
  impl_->reset(keepTransaction);
}
const std::string& Session::database() const {
  return impl_->database();
}
void Session::cancel() {
  impl_->cancel();
}
PlanStatistics Session::planStatistics() const {
  return impl_->statistics();
}

}  // namespace engine
