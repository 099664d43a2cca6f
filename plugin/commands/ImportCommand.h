#pragma once

#include "commands/FlagTable.h"
#include "commands/ImportCollector.h"
#include "commands/LayerIntake.h"

#include <maya/MApiNamespace.h>
#include <maya/MPxCommand.h>
#include <maya/MStatus.h>
#include <maya/MString.h>
#include <maya/MSyntax.h>
#include <maya/MTime.h>

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

namespace vellix {

class NodeCreation;
class SceneWatch;

/// "qmVellixImport": brings pictures and layers of other programs into the drawing, all of them or none, as
/// one step. Creates a drawing node if the scene has none. The result is the number of frames that were put
/// in.
class ImportCommand : public MPxCommand {
public:
    /// More than these are asked for first: a whole film is easily chosen by mistake.
    static constexpr int MANY_PICTURES = 500;
    static constexpr qint64 MANY_BYTES = 500 * 1000 * 1000;

    ImportCommand();
    ~ImportCommand() override;

    static void* Creator();
    static MSyntax CommandSyntax();
    static MString GetCommandName();

    MStatus doIt(const MArgList& args) override;
    MStatus redoIt() override;
    MStatus undoIt() override;
    bool isUndoable() const override { return undoable_; }

private:
    static const FlagTable<ImportCommand>& Flags();

    // Each returns false on a fault, and logs what is wrong and what to do.
    bool ReadArguments(const MArgList& args);
    bool CheckArguments() const;
    bool MakeOptions(ImportCollector::Options& options) const;
    bool Collect(ImportCollector& collector);
    bool CollectScene(ImportCollector& collector);
    bool CollectNode(ImportCollector& collector);
    bool CheckSource() const;
    bool CheckCamera();
    bool CheckCameras(const std::vector<IncomingLayer>& layers) const;
    bool Take(std::vector<IncomingLayer>& layers);
    bool Refuse(const QString& reason) const;
    /// What is imported, as given.
    QString What() const;
    bool MayReadMany(const SceneWatch& scene, qint64 pictures, qint64 bytes, QString& refusal);
    bool AsksForMany(const QString& amount);

    MStatus Step(bool (LayerIntake::*step)(BaseNode& node, QString& refusal), const char* verb);

    QStringList files_;
    QString movie_;
    QString scene_;
    QString fromCamera_;
    QString otherNode_;
    int every_ = 1;
    QString camera_;
    QString layerName_;
    QString fit_;
    MTime startTime_;
    int hold_ = 1;
    int strength_ = 100;
    int layerState_ = -1; ///< negative if none was given
    bool hasStart_ = false;
    bool hasHold_ = false;
    bool hasEvery_ = false;
    bool force_ = false;

    bool undoable_ = false;
    bool isDone_ = false;
    std::unique_ptr<NodeCreation> node_; ///< null if the scene already had one
    LayerIntake intake_;
};

} // namespace vellix
