// The Ret gives the order of the fields, and the elements of Add and Mod that are called the same,
// but for the ending, are the same fields.
#include "simulator/kinds/KindFields.h"

#include <algorithm>
#include <string>

#include "simulator/kinds/Meanings.h"

namespace ostrel::simulator {
namespace {

// A particle of an element, with what the groups around it say.
struct Leaf {
  const Particle* particle;
  bool isMany;
  int either;
  int mixed;
};

class Leaves {
 public:
  explicit Leaves(const Content* content) {
    if (content) Add(*content, {});
  }

  const std::vector<Leaf>& All() const { return oLeaves; }

  /// The leaf of that name but for its ending; it is taken. Null without one.
  const Leaf* Take(std::string_view base) {
    for (Leaf& leaf : oLeaves) {
      if (!leaf.particle || BaseName(leaf.particle->name) != base) continue;
      oTaken.push_back(leaf);
      leaf.particle = nullptr;
      return &oTaken.back();
    }
    return nullptr;
  }

 private:
  static bool IsElement(const Particle& particle) { return !particle.name.empty(); }

  void Add(const Content& content, Leaf around) {
    for (const Particle& particle : content.particles) {
      Leaf leaf = around;
      leaf.particle = &particle;
      leaf.isMany = around.isMany || particle.most > 1;
      if (IsElement(particle)) {
        oLeaves.push_back(leaf);
        continue;
      }
      const bool isChoice = particle.content->isChoice;
      if (isChoice && particle.most > 1) leaf.mixed = ++iGroups;
      const bool ofElements = std::ranges::all_of(particle.content->particles, IsElement);
      if (isChoice && particle.most == 1 && ofElements) leaf.either = ++iGroups;
      Add(*particle.content, leaf);
    }
  }

  std::vector<Leaf> oLeaves;
  std::vector<Leaf> oTaken = [] {
    std::vector<Leaf> taken;
    taken.reserve(kMostElements);
    return taken;
  }();
  int iGroups = 0;
  static constexpr std::size_t kMostElements = 200;
};

const Content* ContentOf(const Leaf* leaf) { return leaf ? leaf->particle->content : nullptr; }

class FieldsMaker {
 public:
  explicit FieldsMaker(std::string_view kind) : sKind(kind) {}

  std::vector<Field> Make(const Content* ret, const Content* add, const Content* mod) const {
    std::vector<Field> fields;
    const Leaves shown(ret);
    Leaves added(add), modified(mod);
    const std::string_view owner = ret ? ret->name : add ? add->name : mod ? mod->name : "";
    for (const Leaf& leaf : shown.All()) {
      const std::string_view base = BaseName(leaf.particle->name);
      fields.push_back(MakeOne(owner, &leaf, added.Take(base), modified.Take(base)));
    }
    for (const Leaf& leaf : std::vector(added.All())) {
      if (!leaf.particle) continue;
      const std::string_view base = BaseName(leaf.particle->name);
      fields.push_back(MakeOne(owner, nullptr, added.Take(base), modified.Take(base)));
    }
    for (const Leaf& leaf : std::vector(modified.All())) {
      if (!leaf.particle) continue;
      fields.push_back(
          MakeOne(owner, nullptr, nullptr, modified.Take(BaseName(leaf.particle->name))));
    }
    return fields;
  }

 private:
  Field MakeOne(std::string_view owner, const Leaf* ret, const Leaf* add, const Leaf* mod) const {
    const Leaf* first = ret ? ret : add ? add : mod;
    if (!first) return {};
    Field field{.name = ret ? ret->particle->name : "",
                .inAdd = add ? add->particle->name : "",
                .inMod = mod ? mod->particle->name : "",
                .type = first->particle->type,
                .isMany = first->isMany,
                .either = first->either,
                .mixed = first->mixed,
                .since = first->particle->since};
    if (field.type == FieldType::kGroup) {
      field.children = Make(ContentOf(ret), ContentOf(add), ContentOf(mod));
      const bool hasId = FindField(field.children, "TxnLineID", Use::kRet) != nullptr;
      if (field.isMany && hasId) field.type = FieldType::kLine;
    }
    GiveMeaning(sKind, owner, field);
    return field;
  }

  std::string_view sKind;
};

}  // namespace

std::vector<Field> FieldsOf(std::string_view kind) {
  const auto definition = [&](std::string_view ending) {
    return FindContent(std::string(kind).append(ending));
  };
  return FieldsMaker(kind).Make(definition("Ret"), definition("Add"), definition("Mod"));
}

}  // namespace ostrel::simulator
