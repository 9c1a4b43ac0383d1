// Umbrella header: everything a caller of ZeKL needs.
#pragma once

#include <ZeKL/DebugOutput.h>
#include <ZeKL/Exports.h>
#include <ZeKL/IConstModelItemTraverser.h>
#include <ZeKL/IConstModelItemVisitor.h>
#include <ZeKL/IContainer.h>
#include <ZeKL/IConversion.h>
#include <ZeKL/IConversionContainer.h>
#include <ZeKL/IDataModelUtils.h>
#include <ZeKL/IEcu.h>
#include <ZeKL/IFactory.h>
#include <ZeKL/IInstance.h>
#include <ZeKL/IInstanceContainer.h>
#include <ZeKL/IKLReader.h>
#include <ZeKL/IKLWriter.h>
#include <ZeKL/IMessage.h>
#include <ZeKL/IModelItem.h>
#include <ZeKL/INrcContainer.h>
#include <ZeKL/INrcItem.h>
#include <ZeKL/IParam.h>
#include <ZeKL/IReporting.h>
#include <ZeKL/ITextTable.h>
#include <ZeKL/ITextTableElement.h>
#include <ZeKL/IWriterConfig.h>
#include <ZeKL/ReportCollector.h>
#include <ZeKL/Types.h>
