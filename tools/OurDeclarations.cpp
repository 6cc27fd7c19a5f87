// A plugin for clang-tidy: narrows what the checks walk through to our own declarations. Nine tenths of a
// file's syntax tree come from the libraries' headers, in which no finding is reported, and walking through
// them anew for each file took most of the time. The analyzer is not concerned: it follows calls wherever
// they lead.

#include <clang/AST/ASTConsumer.h>
#include <clang/AST/ASTContext.h>
#include <clang/Basic/SourceManager.h>
#include <clang/Frontend/FrontendPluginRegistry.h>

#include <memory>
#include <string>
#include <vector>

namespace {

class ScopeConsumer final : public clang::ASTConsumer {
public:
    void HandleTranslationUnit(clang::ASTContext& context) override {
        std::vector<clang::Decl*> ours;
        auto const& sources = context.getSourceManager();
        // What a precompiled header holds is not even loaded: those are the libraries' alone.
        for (auto* const declaration : context.getTranslationUnitDecl()->noload_decls()) {
            if (!sources.isInSystemHeader(sources.getExpansionLoc(declaration->getLocation())))
                ours.push_back(declaration);
        }
        context.setTraversalScope(ours);
    }
};

class ScopeAction final : public clang::PluginASTAction {
protected:
    std::unique_ptr<clang::ASTConsumer> CreateASTConsumer(clang::CompilerInstance&,
                                                          llvm::StringRef) override {
        return std::make_unique<ScopeConsumer>();
    }

    bool ParseArgs(clang::CompilerInstance const&, std::vector<std::string> const&) override { return true; }

    ActionType getActionType() override { return AddBeforeMainAction; }
};

clang::FrontendPluginRegistry::Add<ScopeAction> const registration("our-declarations",
                                                                   "walk through our own declarations");

} // namespace
