#include "cli/index_content.h"

#include <algorithm>

#include "cli/index_text.h"
#include "cli/recover_steps.h"
#include "common/text.h"

namespace orvandel {

namespace {

/// What a list item shows of a conversation.
struct Conversation {
  QString qstrPath;
  QString qstrName;
  QString qstrNumber;  // empty if it is the name
  size_t nMessages;
  std::string strLast;  // YYYY-MM-DD HH:MM:SS
};

template <typename Messages>
std::string LastDate(const Messages& messages) {
  std::string strLast;
  for (const auto& message : messages) strLast = std::max(strLast, message.strDate);
  return strLast;
}

Conversation Describe(const QString& qstrPath, const std::vector<__MESSAGE_INFO__>& messages) {
  const __MESSAGE_INFO__& first = messages.front();
  return {qstrPath, FromNarrow(first.strContactName), FromNarrow(first.strSender), messages.size(),
          LastDate(messages)};
}

Conversation Describe(const QString& qstrPath, const std::vector<__WHATSAPP_MESSAGE__>& messages) {
  const __WHATSAPP_MESSAGE__& first = messages.front();
  const std::string& strName = first.strChatTitle.empty() ? first.strChatName : first.strChatTitle;
  return {qstrPath, FromNarrow(strName), FromNarrow(first.strChatPhone), messages.size(), LastDate(messages)};
}

template <typename Map>
void AddConversations(const std::vector<RecoveryIndex::File>& pages, const Map& map,
                      std::vector<Conversation>& conversations) {
  for (const RecoveryIndex::File& page : pages) {
    const auto it = map.find(page.nKey);
    if (it == map.end() || it->second.empty()) continue;
    Conversation conversation = Describe(page.qstrPath, it->second);
    if (conversation.qstrName.isEmpty()) std::swap(conversation.qstrName, conversation.qstrNumber);
    if (conversation.qstrName.isEmpty()) conversation.qstrName = "Unknown";
    conversations.push_back(std::move(conversation));
  }
}

/// A date without its seconds.
std::string ShortDate(const QString& qstrDate) {
  return Html(qstrDate.left(16));  // YYYY-MM-DD HH:MM
}

void WriteFact(TextFile& file, const char* pszTerm, const std::string& strHtml) {
  if (!strHtml.empty())
    file.Write(std::string("<div><dt>") + pszTerm + "</dt><dd>" + strHtml + "</dd></div>\n");
}

/// Number of items that a category has on the page.
size_t CountOf(const Category& category, const IndexContent& content) {
  const size_t nFiles = content.index.Files(category.nNumber).size();
  const bool bOnePage = !category.pszFolder && category.nNumber != kMessages && category.nNumber != kWhatsApp;
  return bOnePage && nFiles != 0 ? category.pfnCount(content.records) : nFiles;
}

std::string CountItem(const Category& category, const IndexContent& content) {
  const size_t nCount = CountOf(category, content), nTotal = category.pfnCount(content.records);
  std::string strNumber = "<b>" + std::to_string(nCount) + "</b>";
  if (nCount != nTotal) strNumber += " of " + std::to_string(nTotal);
  const std::string strText = strNumber + " <span>" + Html(category.pszLabel) + "</span>";
  const std::vector<RecoveryIndex::File>& files = content.index.Files(category.nNumber);
  const bool bConversations = category.nNumber == kMessages || category.nNumber == kWhatsApp;
  if (files.empty() || category.pszFolder) return strText;
  const std::string strLink = bConversations ? "#conversations" : RelativeLink(files.front().qstrPath);
  return "<a href=\"" + strLink + "\">" + strText + "</a>";
}

}  // namespace

void WriteTitle(TextFile& file, const IndexContent& content) {
  const QString& qstrDevice = content.facts.qstrDevice;
  file.Write(qstrDevice.isEmpty() ? "An unnamed device" : Html(qstrDevice));
}

void WriteFacts(TextFile& file, const IndexContent& content) {
  const IndexFacts& facts = content.facts;
  WriteFact(file, "Model", Html(facts.qstrModel));
  WriteFact(file, "System", facts.qstrVersion.isEmpty() ? "" : "iOS " + Html(facts.qstrVersion));
  WriteFact(file, "Backup made",
            facts.qstrBackupDate.isEmpty() ? "" : ShortDate(facts.qstrBackupDate) + " UTC");
  WriteFact(file, "Recovered", Html(facts.qstrTime));
  if (facts.nFailed == 0) return;
  const std::string strItems = facts.nFailed == 1 ? " item" : " items";
  WriteFact(file, "Failed",
            "<strong>" + std::to_string(facts.nFailed) + strItems +
                "</strong>, named in the output of the program");
}

void WriteCounts(TextFile& file, const IndexContent& content) {
  for (const Category& category : Categories()) {
    if (IsWanted(content.options, category.nNumber))
      file.Write("<li>" + CountItem(category, content) + "</li>\n");
  }
}

void WriteConversations(TextFile& file, const IndexContent& content) {
  std::vector<Conversation> conversations;
  AddConversations(content.index.Files(kMessages), content.records.m_mapMessage, conversations);
  AddConversations(content.index.Files(kWhatsApp), content.records.m_mapWhatsApp, conversations);
  std::stable_sort(conversations.begin(), conversations.end(),
                   [](const auto& one, const auto& other) { return one.strLast > other.strLast; });
  for (const Conversation& conversation : conversations) {
    file.Write("<li><a href=\"" + RelativeLink(conversation.qstrPath) + "\"><bdi>" +
               Html(conversation.qstrName) + "</bdi></a> <bdi class=\"number\">" +
               Html(conversation.qstrNumber) + "</bdi> <span>" + std::to_string(conversation.nMessages) +
               (conversation.nMessages == 1 ? " message" : " messages") + "</span> <time>" +
               ShortDate(FromNarrow(conversation.strLast)) + "</time></li>\n");
  }
}

void WriteMedia(TextFile& file, const IndexContent& content) {
  QString qstrFolder;
  file.Write("{\"folders\":[");
  for (const FileStep& step : FileSteps()) {
    for (const RecoveryIndex::File& copy : content.index.Files(step.nNumber)) {
      const int nName = static_cast<int>(copy.qstrPath.lastIndexOf('/')) + 1;
      const QString qstrParent = copy.qstrPath.left(nName);
      if (qstrParent == qstrFolder) {
        file.Write(",");
      } else {
        file.Write(qstrFolder.isEmpty() ? "{\"path\":[" : "]},\n{\"path\":[");
        std::string strSegments;
        for (const QString& qstrSegment : qstrParent.split('/', Qt::SkipEmptyParts))
          strSegments += (strSegments.empty() ? "" : ",") + ScriptString(qstrSegment);
        file.Write(strSegments + "],\"files\":[");
        qstrFolder = qstrParent;
      }
      file.Write(ScriptString(copy.qstrPath.mid(nName)));
    }
  }
  file.Write(qstrFolder.isEmpty() ? "]}" : "]}]}");
}

}  // namespace orvandel
