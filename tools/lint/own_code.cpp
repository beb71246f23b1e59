// A plugin of clang-tidy that spares it the headers of Qt and of the system. clang-tidy matches its checks
// against all that a source includes and drops, in the end, what it found in others' headers; that is more
// than half of its time.

#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>

#include <vector>

namespace kivo {

namespace {

using clang::ast_matchers::MatchFinder;

class OwnCode : public clang::tidy::ClangTidyCheck {
public:
    using ClangTidyCheck::ClangTidyCheck;

    void registerMatchers(MatchFinder* finder) override {
        finder->addMatcher(clang::ast_matchers::translationUnitDecl(), this);
    }

    // The whole source is matched first, before what it holds. What it holds is limited here, for all checks.
    void check(const MatchFinder::MatchResult& result) override {
        std::vector<clang::Decl*> own;
        for (clang::Decl* declaration : result.Context->getTranslationUnitDecl()->decls()) {
            const clang::SourceLocation place = declaration->getLocation();
            if (place.isValid() && !result.SourceManager->isInSystemHeader(place)) {
                own.push_back(declaration);
            }
        }
        result.Context->setTraversalScope(own);
    }
};

class OwnCodeModule : public clang::tidy::ClangTidyModule {
    void addCheckFactories(clang::tidy::ClangTidyCheckFactories& factories) override {
        factories.registerCheck<OwnCode>("kivo-own-code");
    }
};

const clang::tidy::ClangTidyModuleRegistry::Add<OwnCodeModule> kRegistered(
    "kivo-module", "Limits the other checks to this project's own code.");

}  // namespace

}  // namespace kivo
