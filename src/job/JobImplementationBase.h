// JobImplementationBase.h - the generic property job behind every job handle.
//
// It owns the properties a caller set and the error text of the last failed call. The
// concrete job supplies execution, error-text preparation and result reading.
#pragma once

#include "job/PropertyStore.h"

#include <cstdint>
#include <string>

namespace qent::job {

class JobImplementationBaseDummy {
public:
  virtual ~JobImplementationBaseDummy();
};

class JobImplementationBase : public JobImplementationBaseDummy {
public:
  JobImplementationBase();
  ~JobImplementationBase() override;
  JobImplementationBase(const JobImplementationBase&) = delete;
  JobImplementationBase& operator=(const JobImplementationBase&) = delete;

  // Stores the value under its number; true.
  virtual bool setPropertyById(std::uint32_t number, const std::u16string& value);
  // Resolves the name (plain, then "Main.Sub"); false for a name that resolves to nothing.
  virtual bool setProperty(const std::u16string& name, const std::u16string& value);
  virtual void execute() = 0;
  virtual void prepareErrorText() = 0;
  virtual bool getSubProperty(const std::u16string& name, std::u16string& value) = 0;
  virtual bool getResultProperty(std::uint32_t number, std::u16string& value) = 0;

  const std::string& errorText() const { return errorText_; }
  void setErrorText(std::string text) { errorText_ = std::move(text); }
  const PropertyStore& properties() const { return properties_; }

private:
  std::string errorText_;
  PropertyStore properties_;
};

}  // namespace qent::job
