#include "extract/left_out.h"

#include "common/store.h"

namespace orvandel {

namespace {

/// The result of a statement that counts.
uint64_t Count(const std::string& strPath, const std::string& strStatement) {
  StoreQuery query(strPath, strStatement.c_str(), StoreQuery::Failure::Expected);
  return query.Next() ? query.Text(0).toULongLong() : 0;
}

/// A column that not every store has, and what it adds to a condition.
struct OptionalColumn {
  const char* pszColumn;
  const char* pszTerm;
};

// What makes a message one with content.
constexpr OptionalColumn kContents[] = {
    {"attributedBody", " or attributedBody is not null"},
    {"cache_has_attachments", " or cache_has_attachments = 1"},
};

// 2000 to 3007: reactions and their removal.
constexpr OptionalColumn kNotAReaction = {
    "associated_message_type", " and not coalesce(associated_message_type between 2000 and 3007, 0)"};

// The complement of the joins of the message reader.
constexpr char kInNoConversation[] =
    " and (not exists (select 1 from handle where handle.rowid = message.handle_id)"
    " or message.rowid not in (select message_id from chat_message_join where message_id is not null))";

constexpr char kNotesWithBody[] =
    "select count(*) from ZICCLOUDSYNCINGOBJECT where (ZTITLE1 <> '' or ZSNIPPET <> '')"
    " and ZNOTEDATA in (select Z_PK from ZICNOTEDATA where ZDATA is not null)";

}  // namespace

uint64_t CountMessagesWithoutSender(const std::string& strPath) {
  const StoreTable table(strPath, "message");
  std::string strStatement = "select count(*) from message where (text <> ''";
  for (const OptionalColumn& column : kContents) {
    if (table.Has(column.pszColumn)) strStatement += column.pszTerm;
  }
  strStatement += ')';
  if (table.Has(kNotAReaction.pszColumn)) strStatement += kNotAReaction.pszTerm;
  return Count(strPath, strStatement + kInNoConversation);
}

uint64_t CountNotesWithSnippetOnly(const std::string& strPath) {
  return Count(strPath, kNotesWithBody);
}

}  // namespace orvandel
