#pragma once

#include <window_benches.h>

/// The benches of the program, beginning with that of a file; it counts those that were in operation.
class FileBenches : public WindowBenches
{
public:
    FileBenches(const QString& configuration, Output* output)
        : WindowBenches(operationOf(configuration, output), {}, DevicePlace::OwnThread, output)
    {}

    void exchange(std::unique_ptr<Bench> next) override
    {
        WindowBenches::exchange(std::move(next));
        ++m_count;
    }
    int count() const { return m_count; }

private:
    static std::unique_ptr<Operation> operationOf(const QString& configuration, Output* output)
    {
        QVector<Problem> problems;
        auto operation =
            std::make_unique<Operation>(readBench(configuration, DevicePlace::OwnThread, &problems), output);
        operation->begin({});
        return operation;
    }

    int m_count = 1;
};
