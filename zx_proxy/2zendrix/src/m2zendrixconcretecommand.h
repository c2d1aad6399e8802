// The two halves of a concrete command in one object: what the host sees, then what does the work.
#pragma once

#include <vector>

#include "m2zendrixcommand.h"
#include "m2zendrixgenericscancommand.h"

template <class Face, class Machinery = M2ZendrixCommand>
class M2ZendrixConcreteCommand : public Face, public Machinery {
public:
    template <class... Arguments>
    M2ZendrixConcreteCommand(M2ZendrixMachAbstract* mach, MOutputChannel* output,
                             const Arguments&... arguments)
        : Face(output, arguments...), Machinery(mach, output) {}

    bool IsDone() override { return Machinery::IsDone(); }
    void Abort() override { Machinery::Abort(); }
};

template <class Face>
class M2ZendrixConcreteScanCommand : public M2ZendrixConcreteCommand<Face, M2ZendrixGenericScanCommand> {
public:
    using M2ZendrixConcreteCommand<Face, M2ZendrixGenericScanCommand>::M2ZendrixConcreteCommand;

    bool GetNextScanPoint(std::vector<double>& point) override {
        return M2ZendrixGenericScanCommand::GetNextScanPoint(point);
    }
};
