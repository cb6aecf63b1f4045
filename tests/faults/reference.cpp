#include "tests/faults/reference.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "common/layout.h"

namespace orvandel {

namespace {

std::string LastStep(const std::string& strPath) {
  return strPath.substr(strPath.rfind('/') + 1);
}

std::string ObjectOf(const Variant& variant, const std::string& strId) {
  return variant.bManifestDb ? "/" + strId.substr(0, 2) + "/" + strId : "/" + strId;
}

struct FileList {
  const char* pszKey;
  const char* pszFolder;
};
constexpr FileList kLists[] = {{"cameraRoll", "/Camera Roll/"},
                               {"photoStream", "/Photo Stream/"},
                               {"messageAttachments", "/Message Attachments/"},
                               {"whatsappAttachments", "/WhatsApp Attachments/"}};
constexpr FileList kAppLists[] = {{"appPhotos", "/App Photos/"}, {"appVideos", "/App Video/"}};

struct PageSource {
  const char* pszFolder;
  std::vector<const char*> stores;
};
const std::vector<PageSource> kPages = {{"/Message/", {kMessageStore, kContactsStore}},
                                        {"/Contacts/", {kContactsStore}},
                                        {"/CallHistory/", {kCallStore, kCallStoreFallback, kContactsStore}},
                                        {"/Notes/", {kNotesStore, kNotesCloudStore}}};

void AddFiles(Reference& reference, const Variant& variant, const QJsonArray& files,
              const std::string& strFolder) {
  std::map<std::string, int> copies;  // a second file of a name gets a number
  for (const QJsonValue& value : files) {
    std::string strName = value["name"].toString().toStdString();
    const std::string strId = LastStep(value["path"].toString().toStdString());
    if (const int nCopy = copies[strName]++)
      strName.insert(strName.rfind('.'), "(" + std::to_string(nCopy) + ")");
    reference.sources[strFolder + strName] = {ObjectOf(variant, strId)};
    reference.objects.emplace("file of " + strFolder.substr(1, strFolder.find('/', 1) - 1),
                              ObjectOf(variant, strId));
  }
}

void AddSources(Reference& reference, const Variant& variant, const QJsonObject& scan,
                const std::string& strMaster, bool bOfTool) {
  namespace fs = std::filesystem;
  for (const FileList& list : kLists)
    AddFiles(reference, variant, scan[list.pszKey].toArray(), list.pszFolder);
  for (const FileList& list : kAppLists) {
    const QJsonObject apps = scan[list.pszKey].toObject();
    for (auto it = apps.begin(); it != apps.end(); ++it)
      AddFiles(reference, variant, it.value().toArray(), list.pszFolder + it.key().toStdString() + "/");
  }
  for (const auto& [strProduct, strBytes] : reference.run.products) {
    for (const PageSource& page : kPages) {
      if (strProduct.rfind(page.pszFolder, 0) != 0) continue;
      const bool bCopy = strProduct.find(".db") != std::string::npos;
      for (const char* pszStore : page.stores) {
        if (!bCopy || pszStore == page.stores[0])
          reference.sources[strProduct].insert(ObjectOf(variant, pszStore));
      }
    }
    // The decrypt tool writes each file under its identifier.
    if (bOfTool) reference.sources[strProduct] = {ObjectOf(variant, strProduct.substr(1))};
  }
  for (const QJsonValue& entry : scan["manifest"].toArray()) {
    const std::string strId = entry["id"].toString().toStdString();
    reference.names[ObjectOf(variant, strId)] = {strId, entry["name"].toString().toStdString()};
  }
  static const std::map<std::string, const char*> stores = {
      {"contacts store", kContactsStore}, {"message store", kMessageStore},
      {"call store", kCallStore},         {"call store, older", kCallStoreFallback},
      {"notes store", kNotesStore},       {"notes store, newer", kNotesCloudStore}};
  for (const auto& [strWhat, pszStore] : stores) {
    const std::string strObject = ObjectOf(variant, pszStore);
    reference.names[strObject].insert(pszStore);
    if (fs::exists(strMaster + strObject)) reference.objects[strWhat] = strObject;
  }
  for (const char* pszName : {"/Info.plist", "/Manifest.plist", "/Manifest.db", "/Manifest.mbdb"}) {
    reference.names[pszName] = {pszName};
    if (fs::exists(strMaster + pszName)) reference.objects[pszName + 1] = pszName;
  }
  if (variant.bManifestDb) {
    const std::string strFolder = reference.objects["file of Camera Roll"].substr(0, 3);
    reference.objects["two-character folder"] = strFolder;
    for (const auto& [strObject, names] : std::map(reference.names)) {
      if (strObject.rfind(strFolder + "/", 0) == 0)
        reference.names[strFolder].insert(names.begin(), names.end());
    }
  }
}

}  // namespace

bool IsNamedFile(const std::string& strObject) {
  return strObject.find(".plist") != std::string::npos || strObject.find("/Manifest.") == 0;
}

Reference MakeReference(Sandbox& sandbox, const Variant& variant, Command command) {
  Reference reference;
  reference.run = sandbox.Execute(variant, command, {});
  const Run again = sandbox.Execute(variant, command, {});
  const std::string strWhat =
      std::string(kCommandNames[static_cast<int>(command)]) + " of " + variant.pszName;
  const ProcessResult& first = reference.run.process;
  const bool bToolWithGaps =
      command == Command::Tool && first.nExitStatus == 1;  // the sample lacks some files, so the tool fails
  if (first.bHung || first.nSignal != 0 || (first.nExitStatus != 0 && !bToolWithGaps))
    throw std::runtime_error(strWhat + " fails undisturbed: " + first.strErr);
  // The tool's workers report in arbitrary order.
  if (again.products != reference.run.products || again.process.strOut.size() != first.strOut.size() ||
      again.process.strErr.size() != first.strErr.size())
    throw std::runtime_error(strWhat + " differs from run to run");
  std::istringstream errors(first.strErr);
  for (std::string strLine; std::getline(errors, strLine);) reference.errorLines.insert(strLine);

  const Run scan = sandbox.Execute(variant, Command::ScanJson, {});
  const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(scan.process.strOut)).object();
  if (object.isEmpty()) throw std::runtime_error(strWhat + ": no scan");
  AddSources(reference, variant, object, sandbox.Master(variant), command == Command::Tool);
  return reference;
}

}  // namespace orvandel
