#pragma once
#include <QStringList>

namespace orvandel {

/// The major versions of the system in which columns of "sms.db" appear.
namespace message_columns {
constexpr int kAttributedBody = 10;
constexpr int kAssociated = 10;
constexpr int kDatedJoins = 11;
constexpr int kNanoseconds = 11;  ///< dates are in nanoseconds
constexpr int kPersons = 12;
constexpr int kThreads = 14;
constexpr int kBodyOnly = 14;  ///< most texts are in attributedBody only
constexpr int kEdits = 16;
}  // namespace message_columns

/// @return the statements that create the tables and indexes of "sms.db". @param ios see MessageStore.
QStringList messageSchema(int ios);

}  // namespace orvandel
